#include "bottleservice/components/GraphicsLayer.h"

#include <QDir>

QStringList GraphicsLayer::knownDlls(const QString& key) {
    if (key == "DXVK")
        return {"d3d8.dll", "d3d9.dll", "d3d10.dll", "d3d10_1.dll", "d3d10core.dll", "d3d11.dll", "dxgi.dll"};
    return {"d3d12.dll", "d3d12core.dll"};
}

QStringList GraphicsLayer::dllsOf(const QString& directory) {
    QStringList files;
    for (const char* part : {"x64", "x32", "x86"}) {
        const QDir place(directory + '/' + part);
        for (const QString& name : place.entryList({"*.dll"}, QDir::Files | QDir::NoSymLinks))
            files += place.filePath(name);
    }
    return files;
}
