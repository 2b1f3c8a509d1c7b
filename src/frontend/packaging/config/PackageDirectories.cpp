#include "packaging/config/PackageDirectories.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <utility>

namespace PackageDirectories {

namespace {

constexpr int MinimumDepth = 3;  // slashes in an absolute path

QString absolute(const QString& path) {
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

bool takesDirectory(const PackageEntry& entry, const QString& directory, const Canonical& canonical) {
    return !entry.onlyCopyExe && isInside(directory, canonical(entry.path));
}

/// The widest directory of the programs in `directory`. Repeats, since a wider directory may have more
/// programs in it, so that the order of the programs does not matter.
QString widest(const PackageEntries& entries, QString directory, const Canonical& canonical) {
    for (bool isWidened = true; isWidened;) {
        isWidened = false;
        for (const PackageEntry& entry : entries) {
            if (entry.dirToPackage.isEmpty() || !takesDirectory(entry, canonical(directory), canonical))
                continue;
            const QString own = canonical(entry.dirToPackage);
            if (own == canonical(directory) || !isInside(own, canonical(directory)))
                continue;
            directory = entry.dirToPackage;
            isWidened = true;
        }
    }
    return directory;
}

}  // namespace

QString canonical(const QString& path) {
    const QString found = QFileInfo(path).canonicalFilePath();
    return found.isEmpty() ? absolute(path) : found;
}

bool isInside(const QString& directory, const QString& path) {
    return path == directory || path.startsWith(directory.endsWith('/') ? directory : directory + '/');
}

bool isNearRoot(const QString& directory) {
    return absolute(directory).count('/') < MinimumDepth;
}

QString pathPackaged(const PackageEntry& entry, const QString& bottleDir, const Canonical& canonical) {
    if (entry.inBottles)
        return entry.path;
    const QFileInfo file(entry.path);
    const QString drive = bottleDir + "/drive_c/";
    const bool isAlone = entry.onlyCopyExe || entry.dirToPackage.isEmpty();
    const QString directory = canonical(isAlone ? file.absolutePath() : entry.dirToPackage);
    const QString path = canonical(entry.path);
    if (!isInside(directory, path)) {
        qInfo().nospace().noquote() << entry.path << " is not in " << entry.dirToPackage;
        return entry.path;
    }
    const QString folder = isAlone ? file.completeBaseName() : QFileInfo(directory).fileName();
    const QString packaged = drive + folder + path.mid(directory.size());
    qInfo().nospace().noquote() << entry.path << " --> " << packaged;
    return packaged;
}

QStringList assign(PackageEntries* entries, const QString& id, const QString& directory,
                   const QString& bottleDir, const Canonical& canonical) {
    const QString wanted = absolute(directory);
    const auto chosen = entries->find(id);
    if (chosen == entries->end() || isNearRoot(wanted))
        return {};
    const bool wasAlone = std::exchange(chosen->onlyCopyExe, false);
    if (!isInside(canonical(wanted), canonical(chosen->path))) {
        qDebug().nospace().noquote() << "exe " << chosen->path << " not in dir " << wanted;
        chosen->dirToPackage = wanted;
        chosen->pathPackaged = pathPackaged(*chosen, bottleDir, canonical);
        return {id};
    }
    qDebug().nospace().noquote() << "try to merge dir path: " << wanted;
    const QString merged = widest(*entries, wanted, canonical);
    qDebug().nospace().noquote() << "dir merged: " << merged;
    QStringList changed;
    for (auto entry = entries->begin(); entry != entries->end(); ++entry) {
        const bool isSame = entry->dirToPackage == merged && !(wasAlone && entry == chosen);
        if (isSame || !takesDirectory(*entry, canonical(merged), canonical))
            continue;
        entry->dirToPackage = merged;
        entry->pathPackaged = pathPackaged(*entry, bottleDir, canonical);
        changed += entry.key();
    }
    return changed;
}

}  // namespace PackageDirectories
