#include "bottleservice/desktop/PackageIcons.h"

#include <QDebug>
#include <QDir>

#include "bottleservice/bottles/Programs.h"
#include "fenk/system/RegularFile.h"

namespace {

constexpr qint64 MaximumBytes = 64 * 1024;
const QLatin1String Suffix(".desktop");

QByteArray textOf(const QString& path) {
    return Fenk::RegularFile::read(path, MaximumBytes).value_or(QByteArray());
}

/// An entry that the user has changed or named is the user's.
bool isIcon(const QString& path, const QByteArray& start) {
    const QString id = path.section('/', -1).chopped(Suffix.size());
    return path.startsWith('/') && path.endsWith(Suffix) && Programs::isProgramId(id) &&
           textOf(path).split('\n').contains(start + id.toUtf8());
}

}  // namespace

QStringList PackageIcons::find(const QString& bottlePath, const QString& package, const QString& desktop) {
    if (package.isEmpty())
        return {};
    QStringList paths = QString::fromUtf8(textOf(bottlePath + "/.package/desktop-icons")).split('\n');
    if (!desktop.isEmpty())
        for (const QString& name : QDir(desktop).entryList({'*' + Suffix}, QDir::Files | QDir::NoSymLinks))
            paths += desktop + '/' + name;
    QStringList icons;
    for (const QString& path : qAsConst(paths)) {
        if (path.size() > Suffix.size() && !icons.contains(path) &&
            isIcon(path, "Exec=/opt/apps/" + package.toUtf8() + "/files/run "))
            icons += path;
    }
    return icons;
}

void PackageIcons::remove(const QStringList& icons) {
    for (const QString& path : icons) {
        if (!QFile::remove(path))
            qWarning() << "cannot remove" << path;
    }
}
