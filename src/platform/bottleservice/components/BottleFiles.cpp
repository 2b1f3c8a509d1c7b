#include "bottleservice/components/BottleFiles.h"

#include <sys/stat.h>

#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include "bottleservice/files/AtomicFile.h"
#include "fenk/system/FindIgnoringCase.h"
#include "manifest/ManifestPath.h"

namespace {

bool isRealDirectory(const QString& path) {
    struct stat status = {};
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0 && S_ISDIR(status.st_mode);
}

/// The directory of that name, made if it is missing; empty when it cannot be had.
QString entered(const QString& directory, const QString& name) {
    const QString found = Fenk::findIgnoringCase(directory, name);
    const QString path = directory + '/' + (found.isEmpty() ? name : found);
    if (found.isEmpty() && ::mkdir(QFile::encodeName(path).constData(), 0777) != 0)
        return {};
    return isRealDirectory(path) ? path : QString();
}

QString writeOne(const QString& bottlePath, const Manifest::File& file) {
    QStringList parts = ManifestPath::parts(file.path);
    const QString name = parts.takeLast();
    QString directory = bottlePath + "/drive_c";
    bool isReached = isRealDirectory(directory);
    for (const QString& part : qAsConst(parts)) {
        if (isReached) {
            directory = entered(directory, part);
            isReached = !directory.isEmpty();
        }
    }
    const QString found = isReached ? Fenk::findIgnoringCase(directory, name) : QString();
    const QString path = directory + '/' + (found.isEmpty() ? name : found);
    if (!isReached || QFileInfo(path).isDir())
        return QString(
                   "The file \"%1\" cannot be put into the bottle: its folder leads elsewhere or cannot be "
                   "made, or a folder has its name.")
            .arg(file.path);
    // AtomicFile refuses a link.
    if (QFileInfo(path).isSymLink())
        QFile::remove(path);
    QString error;
    AtomicFile::replace(path, file.content, &error, AtomicFile::Safety::Quick);
    return error;
}

}  // namespace

QString BottleFiles::write(const QString& bottlePath, const QVector<Manifest::File>& files,
                           const std::atomic_bool& cancelled) {
    for (const Manifest::File& file : files) {
        const QString fault = cancelled ? QString("The work was cancelled.") : writeOne(bottlePath, file);
        if (!fault.isEmpty())
            return fault;
    }
    return {};
}
