#include "bottleservice/desktop/PackageIcons.h"

#include <QDebug>
#include <QDir>

#include "bottleservice/bottles/Programs.h"
#include "fenk/system/RegularFile.h"

namespace {

constexpr qint64 MaximumBytes = 64 * 1024;

}  // namespace

void PackageIcons::remove(const QString& package, const QString& desktop) {
    if (package.isEmpty() || desktop.isEmpty())
        return;
    const QByteArray start = "Exec=/opt/apps/" + package.toUtf8() + "/files/run ";
    const QStringList names = QDir(desktop).entryList({"*.desktop"}, QDir::Files | QDir::NoSymLinks);
    for (const QString& name : names) {
        const QString path = desktop + '/' + name;
        const QString id = name.chopped(int(sizeof(".desktop")) - 1);
        // An entry that the user has changed or named is the user's.
        if (!Programs::isProgramId(id) || !Fenk::RegularFile::read(path, MaximumBytes)
                                               .value_or(QByteArray())
                                               .split('\n')
                                               .contains(start + id.toUtf8()))
            continue;
        if (!QFile::remove(path))
            qWarning() << "cannot remove" << path;
    }
}
