#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace Fenk {

/// What a Windows shortcut (.lnk, the Shell Link binary format) starts. Paths are Windows paths as they stand
/// in the file; do not trust them.
struct ShellLink {
    static constexpr int MaximumBytes = 1024 * 1024;

    QString target;
    QString arguments;
    QString workingDirectory;
    QString iconPath;
    QString description;
    QString relativePath;  ///< of the target from the shortcut; empty in most

    /// Returns nothing for anything but a shortcut to a file: web addresses, control panel items and programs
    /// that Windows Installer would fetch first have none.
    static std::optional<ShellLink> parse(const QByteArray& file);
};

}  // namespace Fenk
