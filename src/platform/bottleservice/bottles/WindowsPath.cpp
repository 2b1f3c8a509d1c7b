#include "bottleservice/bottles/WindowsPath.h"

#include <QStringList>

#include "fenk/system/FindIgnoringCase.h"

namespace WindowsPath {

bool isWindowsPath(const QString& path) {
    if (path.size() < 2 || path[1] != ':')
        return false;
    const ushort letter = path[0].toLower().unicode();
    return letter >= 'a' && letter <= 'z' && (path.size() == 2 || path[2] == '\\' || path[2] == '/');
}

QString toUnix(const QString& bottlePath, const QString& path) {
    if (!isWindowsPath(path))
        return path;
    const QString drive = path.left(2).toLower();
    const QStringList parts = path.mid(2).replace('\\', '/').split('/', Qt::SkipEmptyParts);
    QString directory = bottlePath + "/dosdevices/" + drive;
    for (int i = 0; i < parts.size(); ++i) {
        const QString entry = Fenk::findIgnoringCase(directory, parts[i]);
        if (entry.isEmpty())
            return directory + '/' + QStringList(parts.mid(i)).join('/');
        directory += '/' + entry;
    }
    return directory;
}

}  // namespace WindowsPath
