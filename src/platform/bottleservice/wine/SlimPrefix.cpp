#include "bottleservice/wine/SlimPrefix.h"

#include <QDebug>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QHash>
#include <QSaveFile>

#include "bottleservice/files/FileTree.h"
#include "bottleservice/wine/PeTrim.h"
#include "bottleservice/wine/ReplaceableFiles.h"

namespace SlimPrefix {

namespace {

const char Temporary[] = ".cellarix-new";
constexpr qint64 MaximumTrimBytes = 64 * 1024 * 1024;

/// Replaces one of Wine's own files by a smaller one, if it has debug information.
bool trim(const QString& path) {
    QFile file(path);
    if (file.size() > MaximumTrimBytes || !file.open(QIODevice::ReadOnly))
        return true;
    const QByteArray trimmed = PeTrim::trimmed(file.readAll());
    if (trimmed.isEmpty())
        return true;
    QSaveFile smaller(path);
    return smaller.open(QIODevice::WriteOnly) && smaller.write(trimmed) == trimmed.size() && smaller.commit();
}

bool isEntry(const QFileInfo& info) {
    return info.exists() || info.isSymLink();
}

/// Whether every directory between the prefix and the path is a real one.
bool isInside(const QString& prefix, const QString& relative) {
    QString path = prefix;
    const QStringList parts = relative.split('/', Qt::SkipEmptyParts);
    for (int i = 0; i + 1 < parts.size(); ++i) {
        path += '/' + parts[i];
        if (QFileInfo(path).isSymLink() || !QFileInfo(path).isDir())
            return false;
    }
    return true;
}

}  // namespace

bool put(const QString& source, const QString& path, bool asLink) {
    const QString temporary = path + Temporary;
    QFile::remove(temporary);
    const bool made = asLink ? QFile::link(source, temporary) : FileTree::copyFile(source, temporary);
    if (made && ::rename(QFile::encodeName(temporary).constData(), QFile::encodeName(path).constData()) == 0)
        return true;
    QFile::remove(temporary);
    return false;
}

QStringList peDirectories(const QString& wine) {
    const QString root = QFileInfo(QFileInfo(wine).canonicalFilePath()).path() + "/..";
    QStringList found;
    for (const char* base : {"/lib/wine", "/lib64/wine", "/lib/x86_64-linux-gnu/wine",
                             "/lib/i386-linux-gnu/wine", "/lib32/wine"}) {
        for (const char* kind : {"/x86_64-windows", "/i386-windows"}) {
            const QString path = QDir::cleanPath(root + base + kind);
            if (QFileInfo::exists(path + "/kernel32.dll") && !found.contains(path))
                found += path;
        }
    }
    return found;
}

QString slim(const QString& prefix, const QString& wine, const std::atomic_bool& cancelled) {
    QHash<QString, QStringList> own;
    for (const QString& directory : peDirectories(wine)) {
        for (const QString& name : QDir(directory).entryList(QDir::Files))
            own[name.toLower()] += directory + '/' + name;
    }
    QDirIterator walk(prefix + "/drive_c/windows", QDir::Files | QDir::NoSymLinks,
                      QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        if (cancelled)
            return "The work was cancelled.";
        const QString path = walk.next();
        if (ReplaceableFiles::contains(path.mid(prefix.size() + 1))) {
            if (!trim(path))
                return QString("Cannot write %1.").arg(path);
            continue;
        }
        for (const QString& source : own.value(walk.fileName().toLower())) {
            if (!FileTree::sameContent(source, path))
                continue;
            if (!put(source, path, true))
                return QString("Cannot put a link in the place of %1.").arg(path);
            break;
        }
    }
    QFile stamp(prefix + "/.update-timestamp");
    if (!stamp.open(QIODevice::WriteOnly | QIODevice::Truncate) || stamp.write("disable\n") < 0)
        return QString("Cannot write %1.").arg(stamp.fileName());
    return {};
}

QString renew(const QString& prefix, const QString& oldTemplate, const QString& newTemplate,
              const std::atomic_bool& cancelled) {
    int mended = 0;
    QDirIterator walk(newTemplate + "/drive_c/windows",
                      QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                      QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        if (cancelled)
            return "The work was cancelled.";
        const QFileInfo fresh(walk.next());
        const QString relative = fresh.filePath().mid(newTemplate.size() + 1);
        const QString path = prefix + '/' + relative;
        const QFileInfo present(path);
        if (!isInside(prefix, relative))
            continue;
        if (fresh.isDir() && !fresh.isSymLink()) {
            QDir().mkdir(path);
            continue;
        }
        const bool missing = !isEntry(present);
        const bool dangling = present.isSymLink() && !present.exists();
        const QString old = oldTemplate + '/' + relative;
        const bool isOldLink = present.isSymLink() &&
                               present.symLinkTarget() == QFileInfo(old).symLinkTarget() &&
                               present.symLinkTarget() != fresh.symLinkTarget();
        const bool untouched =
            isOldLink || (!missing && !present.isSymLink() && QFileInfo::exists(old) &&
                          FileTree::sameContent(old, path) && !FileTree::sameContent(fresh.filePath(), path));
        if (!missing && !dangling && !untouched)
            continue;
        const QString source = fresh.isSymLink() ? fresh.symLinkTarget() : fresh.filePath();
        if (!put(source, path, fresh.isSymLink()))
            return QString("Cannot renew %1.").arg(path);
        ++mended;
    }
    qInfo() << "renewed" << mended << "files of" << prefix;
    return {};
}

}  // namespace SlimPrefix
