#include "shell/requests/LinkTarget.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>

#include "backend/WindowsPath.h"
#include "core/base/Paths.h"
#include "fenk/system/RegularFile.h"
#include "fenk/system/ShellLink.h"

namespace {

constexpr int DriveCharacters = 3;  // "C:\"
constexpr int MaximumLevels = 24;
const QLatin1String DriveC("/drive_c/");

/// Whether the path leads down, by at least one name.
bool leadsDown(QString windowsRest) {
    const QStringList parts = windowsRest.replace('\\', '/').split('/', Qt::SkipEmptyParts);
    return !parts.isEmpty() && !parts.contains(".") && !parts.contains("..");
}

/// Devices and pipes are nothing to add.
bool isFileOrFolder(const QString& path) {
    const QFileInfo info(path);
    return info.isFile() || info.isDir();
}

/// An existing file or folder below `base`, whatever the case of its name.
QString fileBelow(const QString& base, QString windowsRest) {
    if (!leadsDown(windowsRest))
        return {};
    const QString found = WindowsPath::resolveIgnoringCase(base, windowsRest.replace('\\', '/'));
    return !found.isEmpty() && isFileOrFolder(found) ? found : QString();
}

QString beside(QString directory, QString relative) {
    relative.replace('\\', '/');
    for (int level = 0; level < MaximumLevels; ++level) {
        if (relative.startsWith(QLatin1String("./"))) {
            relative.remove(0, 2);
        } else if (relative.startsWith(QLatin1String("../"))) {
            relative.remove(0, 3);
            directory = QFileInfo(directory).path();
        }
    }
    return fileBelow(directory, relative);
}

/// As if one of the directories above the shortcut were its drive.
QString onSameDisk(QString directory, const QString& rest) {
    for (int level = 0; level < MaximumLevels; ++level) {
        const QString found = fileBelow(directory, rest);
        const QString above = QFileInfo(directory).path();
        if (!found.isEmpty() || above == directory)
            return found;
        directory = above;
    }
    return {};
}

}  // namespace

LinkTarget LinkTarget::of(const QString& shortcut) {
    LinkTarget target;
    const QString path = QFileInfo(shortcut).canonicalFilePath();
    const auto bytes = Fenk::RegularFile::read(path, Fenk::ShellLink::MaximumBytes);
    const auto link = bytes ? Fenk::ShellLink::parse(*bytes) : std::nullopt;
    if (!link)
        return target;
    target.windowsPath = link->target;
    if (!link->arguments.isEmpty())
        qInfo() << "arguments of the shortcut are not used" << shortcut << link->arguments.left(200);
    const QString bottles = QFileInfo(Paths::bottlesDataDir() + "/bottles").canonicalFilePath() + '/';
    const int drive = path.indexOf(DriveC);
    if (path.startsWith(bottles) && drive > 0) {
        target.bottle = path.mid(bottles.size(), drive - bottles.size());
        const QString file = WindowsPath::toUnix(path.left(drive), link->target);
        if (leadsDown(link->target.mid(DriveCharacters)) && isFileOrFolder(file))
            target.file = file;
        return target;
    }
    const QString directory = QFileInfo(path).path();
    const QString rest = link->target.mid(DriveCharacters);
    target.file = beside(directory, link->relativePath);
    if (target.file.isEmpty() && link->target.startsWith('z', Qt::CaseInsensitive))
        target.file = fileBelow("/", rest);
    if (target.file.isEmpty())
        target.file = onSameDisk(directory, rest);
    return target;
}
