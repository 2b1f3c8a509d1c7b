#pragma once

#include <QJsonObject>
#include <QProcessEnvironment>

/// The environment in which the service starts Wine.
namespace WineEnvironment {

/// This process's environment without what belongs to another prefix or program, with a UTF-8 LC_CTYPE (Wine
/// needs one for file names; a service that the bus started may have none), with the given variables over it.
/// The locale's other categories stay as they are.
QProcessEnvironment forProcess(const QJsonObject& variables,
                               const QProcessEnvironment& base = QProcessEnvironment::systemEnvironment());

/// For making a prefix: silent, and without Wine's questions about packages that this machine does not have.
QJsonObject forCreation(const QString& prefix);

}  // namespace WineEnvironment
