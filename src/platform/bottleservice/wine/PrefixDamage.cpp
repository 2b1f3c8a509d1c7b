#include "bottleservice/wine/PrefixDamage.h"

#include <QDebug>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

#include "bottleservice/wine/AddedFiles.h"
#include "bottleservice/wine/MenuBuilder.h"
#include "bottleservice/wine/PeFile.h"
#include "bottleservice/wine/SlimPrefix.h"

namespace {

const char* const Registries[] = {"system.reg", "user.reg", "userdef.reg"};
const QLatin1String DriveC("dosdevices/c:");

/// Whether no directory between the prefix and the path is a link or a file; missing ones can be made.
bool isReachable(const QString& prefix, const QString& relative) {
    QString path = prefix;
    const QStringList parts = relative.split('/', Qt::SkipEmptyParts);
    for (int i = 0; i + 1 < parts.size(); ++i) {
        path += '/' + parts[i];
        const QFileInfo info(path);
        if (info.isSymLink())
            return false;
        if (!info.exists())
            return true;
        if (!info.isDir())
            return false;
    }
    return true;
}

bool isDamaged(const QFileInfo& original, const QFileInfo& present) {
    if (!present.exists())
        return true;  // or a dangling link
    if (!present.isFile() ||
        (present.isSymLink() && original.isSymLink() && present.symLinkTarget() == original.symLinkTarget()))
        return false;
    if (present.size() == 0)
        return original.size() > 0 && PeFile::read(original.filePath()).state == PeFile::State::Whole;
    if (present.size() == original.size() && present.lastModified() == original.lastModified())
        return false;
    return PeFile::read(present.filePath()).state != PeFile::State::Whole &&
           PeFile::read(original.filePath()).state == PeFile::State::Whole;
}

}  // namespace

QStringList PrefixDamage::find(const QString& prefix, const QString& templatePath,
                               const std::atomic_bool& cancelled) {
    QStringList damaged;
    QDirIterator walk(templatePath + "/drive_c/windows",
                      QDir::Files | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot,
                      QDirIterator::Subdirectories);
    while (walk.hasNext() && !cancelled) {
        walk.next();
        const QFileInfo original = walk.fileInfo();
        const QString relative = original.filePath().mid(templatePath.size() + 1);
        if (!original.isFile() || AddedFiles::isExpected(relative))
            continue;
        if (isReachable(prefix, relative) && isDamaged(original, QFileInfo(prefix + '/' + relative)))
            damaged += relative;
    }
    for (const char* registry : Registries) {
        const QFileInfo present(prefix + '/' + registry);
        if (QFileInfo(templatePath + '/' + registry).size() > 0 && !present.isSymLink() &&
            (!present.exists() || (present.isFile() && present.size() == 0)))
            damaged += registry;
    }
    const QFileInfo drive(prefix + '/' + DriveC);
    if (!drive.exists() && !drive.isSymLink() && isReachable(prefix, DriveC))
        damaged += DriveC;
    return damaged;
}

QString PrefixDamage::restore(const QString& prefix, const QString& templatePath, const QStringList& files,
                              Links links, const std::atomic_bool& cancelled) {
    for (const QString& relative : files) {
        if (cancelled)
            return "The work was cancelled.";
        const QString path = prefix + '/' + relative;
        const QFileInfo original(templatePath + '/' + relative);
        QString source = original.filePath();
        bool isLink = original.isSymLink();
        if (relative == DriveC) {
            source = "../drive_c";
        } else if (isLink) {
            source = original.symLinkTarget();
            isLink = links == Links::AsInTemplate;
        }
        if (!QDir().mkpath(QFileInfo(path).path()) || !SlimPrefix::put(source, path, isLink))
            return QString("Cannot renew %1.").arg(path);
    }
    if (!files.isEmpty())
        qInfo() << "renewed" << files.size() << "files of" << prefix << files.mid(0, 20);
    return files.isEmpty() ? QString() : MenuBuilder::removeFromStart(prefix);
}
