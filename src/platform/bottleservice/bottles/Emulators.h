#pragma once

#include <QJsonObject>
#include <QString>
#include <functional>

/// The programs that run x86 code on machines with another processor.
namespace Emulators {

/// The path of an executable with this name; empty if there is none.
using Finder = std::function<QString(const QString& name)>;

/// {"installed": {name: path}, "using": name}; both are empty on an x86 machine. The bottle's own choice is
/// used while it is installed, otherwise the first one that is.
QJsonObject describe(const QString& architecture, const QString& chosen, const Finder& find);
/// The same for this machine.
QJsonObject describe(const QString& chosen);

/// The path of the emulator that a bottle with this choice uses; empty on a machine that needs none.
QString pathInUse(const QString& chosen);

}  // namespace Emulators
