#pragma once

#include <QStringList>

/// DXVK and VKD3D as they lie on the machine: a directory for each version, with its DLLs below "x64" and
/// "x32" or "x86".
namespace GraphicsLayer {

/// The paths of the DLLs of a version.
QStringList dllsOf(const QString& directory);

/// The DLLs that any version of the layer has ever had. `key` is that of bottle.yml, "DXVK" or "VKD3D".
QStringList knownDlls(const QString& key);

}  // namespace GraphicsLayer
