#pragma once

#include <QString>

/// The names that overrides may have, as the background service takes them.
namespace DllNames {

/// A file name without directory, or "*" and one; at most 255 characters, none of which ends a name for Wine.
bool isGood(const QString& name);
/// Whether Wine takes both for one module, such as "d3d9" and "D3D9.dll".
bool isSame(const QString& name, const QString& other);

}  // namespace DllNames
