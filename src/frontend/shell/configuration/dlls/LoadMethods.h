#pragma once

#include <QString>

/// The ways in which Wine loads a DLL, by their index in the list that the user sees.
namespace LoadMethods {

constexpr int Native = 0;
constexpr int NativeThenBuiltin = 2;
constexpr int Disabled = 4;
constexpr int Count = 5;

/// For the user.
QString text(int method);
/// What the service calls it: "n", "b", "n,b", "b,n" or the empty string. "n" for a negative index.
QString wireValue(int method);
/// Native, with a warning, for a value that is none of them.
int ofWireValue(const QString& value);

}  // namespace LoadMethods
