#include "packaging/driver/SaveDirectory.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include "core/base/SettingsStore.h"

namespace SaveDirectory {

namespace {

const char Key[] = "basic.deb_save_path.";

bool isUsable(const QString& path) {
    const QFileInfo info(path);
    return !path.isEmpty() && info.isDir() && info.isWritable();
}

}  // namespace

QString usable(const QString& configured, const QString& fallback) {
    if (isUsable(configured))
        return configured;
    qInfo().nospace().noquote() << "savePath " << configured << " not a dir & writable, try to create it";
    if (!configured.isEmpty() && QDir().mkpath(configured) && isUsable(configured))
        return configured;
    qInfo() << "not writable, try to use desktop";
    if (!fallback.isEmpty())
        QDir().mkpath(fallback);
    return fallback;
}

QString current() {
    const QString configured = settingsStore()->getOption(Key).toString();
    const QString path =
        usable(configured, QStandardPaths::writableLocation(QStandardPaths::DesktopLocation));
    if (path != configured)
        set(path);
    qInfo().nospace().noquote() << "Will Save deb to: " << path;
    return path;
}

void set(const QString& directory) {
    settingsStore()->setOption(Key, directory);
    qInfo().nospace().noquote() << "save to: " << directory;
}

QString newestPackage(const QString& directory, const QString& packageName) {
    const QFileInfoList files =
        QDir(directory).entryInfoList({packageName + "_*.deb"}, QDir::Files, QDir::Time);
    return files.isEmpty() ? QString() : files.first().absoluteFilePath();
}

}  // namespace SaveDirectory
