#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

/// Starts a Windows program in a bottle, without a shell and independent of the service. Its output goes to
/// "logs/command-<program>.txt" of the bottle.
namespace DetachedCommand {

/// Returns an error text, empty on success.
QString start(const QString& wine, const QStringList& arguments, const QProcessEnvironment& environment,
              const QString& bottlePath);

/// The file name of the log: the program's name, with only harmless characters.
QString logName(const QString& program);

}  // namespace DetachedCommand
