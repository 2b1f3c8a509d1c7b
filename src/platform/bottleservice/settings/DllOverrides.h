#pragma once

#include <QJsonObject>
#include <QString>

/// The rules of DLL overrides: which DLLs Wine loads, and from where. A name is the file name of a DLL or
/// program without directory, with a leading "*" for "in any directory". A method is "n" (native), "b"
/// (Wine's own), "n,b", "b,n" or empty (not at all).
namespace DllOverrides {

bool isName(const QString& name);
bool isMethod(const QString& method);

/// The value of WINEDLLOVERRIDES: "name=method" joined by ";". Invalid pairs are left out. Switches off
/// winemenubuilder unless the bottle says otherwise: programs and associations are read from the bottle, and
/// nothing reaches the desktop unasked.
QString variable(const QJsonObject& overrides);

}  // namespace DllOverrides
