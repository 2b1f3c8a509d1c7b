#pragma once

#include <QString>

/// Names for the copy of a portable program, from the path of its folder or archive, which is not trusted.
/// They are never empty, never longer than MaximumCharacters, and need not be free.
namespace PortableName {

constexpr int MaximumCharacters = 50;

/// A name that Windows takes for a folder: without its special characters, device names, and blanks or dots
/// at the end.
QString folder(const QString& path);

/// The name of the bottle: "portable-" and the folder's name without blanks and characters that are special
/// to shells.
QString bottle(const QString& path);

}  // namespace PortableName
