#include "backend/WindowsPath.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include "fenk/system/FindIgnoringCase.h"

bool WindowsPath::isWindowsPath(const QString& path) {
    static const QRegularExpression absolute(R"(^[a-zA-Z]:\\)");
    return absolute.match(path).hasMatch() || isDrive(path);
}

bool WindowsPath::isDrive(const QString& path) {
    static const QRegularExpression bareDrive(R"(^[a-zA-Z]:(\\){0,2}$)");
    return bareDrive.match(path).hasMatch();
}

QString WindowsPath::toUnix(const QString& bottlePath, const QString& windowsPath) {
    QString forward = windowsPath;
    forward.replace('\\', '/');
    QString path = bottlePath + "/dosdevices/" + forward.left(2).toLower() + forward.mid(2);
    static const QRegularExpression controls("[\n\r\t]");
    path.replace(controls, " ");  // values from the registry bring them along
    if (QFile::exists(path) || !path.startsWith(bottlePath) || !QDir(bottlePath).exists())
        return path;
    const QString resolved = resolveIgnoringCase(bottlePath, path.mid(bottlePath.size()));
    return resolved.isEmpty() ? path : resolved;
}

QString WindowsPath::resolveIgnoringCase(const QString& base, const QString& relative) {
    QString current = base;
    for (const QString& part : relative.split('/', Qt::SkipEmptyParts)) {
        const QString match = Fenk::findIgnoringCase(current, part);
        if (match.isEmpty())
            return {};
        current += "/" + match;
    }
    return current;
}
