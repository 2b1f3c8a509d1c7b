#include "packaging/driver/SaveDirectory.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include "backend/InBackground.h"
#include "core/base/SettingsStore.h"

namespace SaveDirectory {

namespace {

const char Key[] = "basic.deb_save_path.";

bool isUsable(const QString& path) {
    const QFileInfo info(path);
    return !path.isEmpty() && info.isDir() && info.isWritable();
}

void set(const QString& directory) {
    if (settingsStore()->getOption(Key).toString() != directory)
        settingsStore()->setOption(Key, directory);
    qInfo().nospace().noquote() << "save to: " << directory;
}

}  // namespace

QString usable(const QString& configured, const QString& fallback) {
    if (isUsable(configured))
        return configured;
    qInfo().nospace().noquote() << "savePath " << configured << "not a dir & writable, try to create it";
    if (!configured.isEmpty() && QDir().mkpath(configured) && isUsable(configured))
        return configured;
    qInfo() << "not writable, try to use desktop";
    if (!fallback.isEmpty())
        QDir().mkpath(fallback);
    return fallback;
}

void find(QObject* context, const std::function<void(const QString&)>& take) {
    const QString configured = settingsStore()->getOption(Key).toString();
    inBackground(
        context,
        [configured] {
            return usable(configured, QStandardPaths::writableLocation(QStandardPaths::DesktopLocation));
        },
        [take](const QString& path) {
            set(path);
            qInfo().nospace().noquote() << "Will Save deb to: " << path;
            take(path);
        });
}

void change(const QString& directory, QObject* context, const std::function<void(bool)>& then) {
    inBackground(
        context, [directory] { return usable(directory, {}) == directory; },
        [directory, then](bool isUsable) {
            if (isUsable)
                set(directory);
            then(isUsable);
        });
}

QString newestPackage(const QString& directory, const QString& packageName) {
    const QFileInfoList files =
        QDir(directory).entryInfoList({packageName + "_*.deb"}, QDir::Files, QDir::Time);
    return files.isEmpty() ? QString() : files.first().absoluteFilePath();
}

}  // namespace SaveDirectory
