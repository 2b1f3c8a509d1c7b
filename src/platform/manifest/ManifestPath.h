#pragma once

#include <QString>
#include <QStringList>

/// Which paths a manifest may name. A path is absolute, on drive C: and spelt as Windows does. Reserved names
/// of devices, "..", and characters that Windows does not allow in a name are refused. These are rules about
/// the text alone: whoever writes the file must also follow no link.
namespace ManifestPath {

constexpr int MaximumLength = 240;  ///< in characters, what Windows programs can open

enum class Use {
    Write,  ///< not below c:\windows, which belongs to Wine and the components
    Run
};

/// Why the path is refused, as the end of a sentence such as "must lie on drive C:"; empty if it is not.
QString check(const QString& path, Use use);

/// The parts of a path that has passed check(), below drive C:.
QStringList parts(const QString& path);

/// Whether the text is a plain file name such as "regedit.exe", for a program that comes with Wine.
bool isProgramName(const QString& name);

/// Whether a text for a program names something outside of the bottle: drive Z:, a path of Unix, Wine's own
/// form of one, or the switch with which start.exe runs native programs. Finds what is written plainly.
bool leadsOutOfWine(const QString& text);

}  // namespace ManifestPath
