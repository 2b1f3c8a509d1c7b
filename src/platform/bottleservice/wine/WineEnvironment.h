#pragma once

#include <QJsonObject>
#include <QProcessEnvironment>

/// The environment in which the service starts Wine.
namespace WineEnvironment {

/// This process's environment with the given variables, without those of another prefix or program, and with
/// a UTF-8 LC_CTYPE: Wine needs one for file names, and a service that the bus started may have none. The
/// locale's other categories are unchanged.
QProcessEnvironment forProcess(const QJsonObject& variables,
                               const QProcessEnvironment& base = QProcessEnvironment::systemEnvironment());

/// The variables for making a prefix: no output, no questions of Wine about packages that this machine does
/// not have, and nothing that reaches the user's browser or menus.
QJsonObject forCreation(const QString& prefix);

}  // namespace WineEnvironment
