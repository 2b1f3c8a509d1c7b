#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

/// Starts a Windows program in a bottle that then lives on its own, without a shell; what it prints goes to
/// "logs/command-<program>.txt" of the bottle.
namespace DetachedCommand {

/// Empty on success, else a sentence.
QString start(const QString& wine, const QStringList& arguments, const QProcessEnvironment& environment,
              const QString& bottlePath);

/// The name of the log: of the program's name only what is harmless in a file name.
QString logName(const QString& program);

}  // namespace DetachedCommand
