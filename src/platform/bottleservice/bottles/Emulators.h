#pragma once

#include <QJsonObject>
#include <QString>
#include <functional>

/// The programs that run x86 code on a machine with another processor.
namespace Emulators {

/// Path of an executable of that name, empty if the machine has none.
using Finder = std::function<QString(const QString& name)>;

/// {"installed": {name: path}, "using": name}. An x86 machine needs none and has none. The bottle's own
/// choice holds while it is installed; otherwise the first that is.
QJsonObject describe(const QString& architecture, const QString& chosen, const Finder& find);
/// The same for this machine.
QJsonObject describe(const QString& chosen);

/// Path of the emulator that a bottle with this choice uses; empty on a machine that needs none.
QString pathInUse(const QString& chosen);

}  // namespace Emulators
