#pragma once

#include <QJsonObject>
#include <QString>

/// How Wine is told which DLLs to load from where. A name is that of a DLL or program without a directory,
/// with a leading "*" for "whatever directory"; a method is "n", "b", "n,b", "b,n" or empty for "not at all".
namespace DllOverrides {

bool isName(const QString& name);
bool isMethod(const QString& method);

/// "name=method" joined by ";", as WINEDLLOVERRIDES takes it; what is no such pair is left out.
/// Wine's own maker of menu entries is off unless the bottle says otherwise: programs and associations are
/// taken from the bottle, and nothing reaches the desktop unasked.
QString variable(const QJsonObject& overrides);

}  // namespace DllOverrides
