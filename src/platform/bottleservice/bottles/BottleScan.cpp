#include "bottleservice/bottles/BottleScan.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QStandardPaths>
#include <QUuid>
#include <algorithm>
#include <iterator>

#include "bottleservice/bottles/ExecutableRules.h"
#include "bottleservice/bottles/Programs.h"
#include "bottleservice/bottles/WindowsPath.h"
#include "manifest/SettingRules.h"

namespace BottleScan {

namespace {

constexpr int MaximumDepth = 6;
constexpr int MaximumEntries = 20000;
constexpr int MaximumFound = 500;
constexpr int MaximumNames = 5000;
const QUuid Namespace("{6f0b31a2-8a35-4c0e-9f0a-5d0e7c1b2a44}");

/// Regular files with the suffix below the directory.
void collect(const QString& directory, const QString& suffix, int depth, int* left, QStringList* files) {
    if (depth > MaximumDepth || QFileInfo(directory).isSymLink())
        return;
    const auto entries = QDir(directory).entryInfoList(
        QDir::Files | QDir::Dirs | QDir::Hidden | QDir::NoSymLinks | QDir::NoDotAndDotDot, QDir::Name);
    for (const QFileInfo& entry : entries) {
        if (--*left < 0 || files->size() >= MaximumFound)
            return;
        if (entry.isDir())
            collect(entry.filePath(), suffix, depth + 1, left, files);
        else if (entry.fileName().endsWith(suffix, Qt::CaseInsensitive))
            files->append(entry.filePath());
    }
}

QStringList collected(const QStringList& directories, const QString& suffix) {
    QStringList files;
    int left = MaximumEntries;
    for (const QString& directory : directories)
        collect(directory, suffix, 0, &left, &files);
    return files;
}

/// Real directories at this place, component by component, without regard to case; "*" is any name.
QStringList resolved(const QString& base, const QStringList& parts) {
    QStringList directories{base};
    for (const QString& part : parts) {
        QStringList next;
        for (const QString& directory : qAsConst(directories)) {
            const auto found = QDir(directory).entryList(
                {part}, QDir::Dirs | QDir::Hidden | QDir::NoSymLinks | QDir::NoDotAndDotDot);
            for (const QString& name : found)
                next += directory + '/' + name;
        }
        directories = next;
    }
    return directories;
}

QStringList resolvedAll(const QString& bottlePath, std::initializer_list<const char*> places) {
    QStringList directories;
    if (QFileInfo(bottlePath + "/drive_c").isSymLink())
        return directories;
    for (const char* place : places)
        directories += resolved(bottlePath + "/drive_c", QString(place).split('/'));
    return directories;
}

/// In a bottle the desktop may be a link to the user's own.
QStringList onUsersDesktop(const QString& bottlePath) {
    QStringList files;
    for (const QString& user : resolved(bottlePath + "/drive_c/users", {"*"})) {
        const QFileInfo desktop(user + "/Desktop");
        if (!desktop.isSymLink())
            continue;
        for (const QString& name : QDir(desktop.filePath())
                                       .entryList({"*.lnk"}, QDir::Files | QDir::NoSymLinks)
                                       .mid(0, MaximumFound))
            files += desktop.filePath() + '/' + name;
    }
    return files;
}

/// Nothing for an older or invalid shortcut.
std::optional<Fenk::ShellLink> readLink(const QString& path, const QDateTime& since) {
    QFile file(path);
    if (QFileInfo(path).lastModified().toSecsSinceEpoch() < since.toSecsSinceEpoch() ||
        !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return Fenk::ShellLink::parse(file.read(Fenk::ShellLink::MaximumBytes + 1));
}

bool leadsInside(const QString& bottlePath, const Fenk::ShellLink& link) {
    const QString file = QFileInfo(WindowsPath::toUnix(bottlePath, link.target)).canonicalFilePath();
    return file.startsWith(QFileInfo(bottlePath).canonicalFilePath() + '/');
}

/// The real folders of the programs, which may lie outside the bottle.
QStringList foldersOf(const QString& bottlePath, const QJsonObject& programs) {
    QSet<QString> folders;
    for (const QJsonValue& program : programs) {
        const QFileInfo file(WindowsPath::toUnix(bottlePath, program.toObject()["path"].toString()));
        if (file.isFile())
            folders += file.canonicalPath();
    }
    return folders.values();
}

QStringList filesBeside(const QString& bottlePath, const QJsonObject& programs, const QString& filter) {
    QStringList names;
    const QString windows = QFileInfo(bottlePath + "/drive_c/windows").canonicalFilePath();
    for (const QString& folder : foldersOf(bottlePath, programs)) {
        // Programs in Wine's own directory are left out.
        if (folder == windows || folder.startsWith(windows + '/'))
            continue;
        for (const QString& name :
             QDir(folder).entryList({filter}, QDir::Files | QDir::NoSymLinks, QDir::Name)) {
            if (names.size() < MaximumNames)
                names += name;
        }
    }
    names.removeDuplicates();
    names.sort(Qt::CaseInsensitive);
    return names;
}

/// A file may have a name that no override can have.
QStringList overridable(const QStringList& names) {
    QStringList good;
    std::copy_if(names.begin(), names.end(), std::back_inserter(good), SettingRules::isDllName);
    return good;
}

}  // namespace

Fenk::ExecutableKind kindOf(const QString& file) {
    static const QRegularExpression place("/drive_c/Program Files( \\(x86\\))?/([^/]+)/",
                                          QRegularExpression::CaseInsensitiveOption);
    return Fenk::executableKind(file.section('/', -1), place.match(file).captured(2));
}

bool isOfWine(const QString& file) {
    QFile head(file);
    return head.open(QIODevice::ReadOnly) && head.read(0x60).mid(0x40).startsWith("Wine ");
}

QString windowsPath(const QString& bottlePath, const QString& file) {
    return "C:" + file.mid(bottlePath.size() + int(strlen("/drive_c"))).replace('/', '\\');
}

QVector<Shortcut> shortcuts(const QString& bottlePath, const QDateTime& since) {
    const QStringList places =
        resolvedAll(bottlePath, {"ProgramData/Microsoft/Windows/Start Menu",
                                 "users/*/AppData/Roaming/Microsoft/Windows/Start Menu", "users/*/Start Menu",
                                 "users/*/Desktop", "users/*/桌面"});
    QStringList files = collected(places, ".lnk");
    const QStringList inside = files;
    files += onUsersDesktop(bottlePath);
    files.removeDuplicates();
    QVector<Shortcut> found;
    for (const QString& path : qAsConst(files)) {
        const auto link = readLink(path, since);
        const QString name = QFileInfo(path).completeBaseName();
        if (link && (inside.contains(path) || leadsInside(bottlePath, *link)) &&
            ExecutableRules::isProgramShortcut(name, link->target))
            found.append({path, name, *link});
    }
    return found;
}

void clearUsersDesktop(const QString& bottlePath, const QDateTime& since) {
    // A bottle's desktops may be links to anywhere; only the user's own desktop is cleared.
    const QDir desktop(QStandardPaths::writableLocation(QStandardPaths::DesktopLocation));
    const QString own = resolvedAll(bottlePath, {"users/Public/Desktop"}).value(0);
    if (own.isEmpty() || desktop == QDir::home())
        return;
    for (const QString& path : onUsersDesktop(bottlePath)) {
        const QFileInfo info(path);
        if (info.canonicalPath() != desktop.canonicalPath())
            continue;
        const auto link = readLink(path, since);
        if (!link || !leadsInside(bottlePath, *link))
            continue;
        QString inside = own + '/' + info.fileName();
        for (int i = 2; QFileInfo(inside).exists() || QFileInfo(inside).isSymLink(); ++i)
            inside = QString("%1/%2 (%3).lnk").arg(own, info.completeBaseName()).arg(i);
        if (QFile::copy(path, inside) && QFile::remove(path))
            qInfo() << "took a shortcut from the desktop into the bottle:" << path;
        else
            qWarning() << "a shortcut of a bottle stays on the desktop:" << path;
    }
}

QJsonArray discovered(const QString& bottle, const QString& bottlePath) {
    const QStringList places =
        resolvedAll(bottlePath, {"Program Files", "Program Files (x86)", "users/*/AppData/Local/Programs"});
    QJsonArray records;
    for (const QString& file : collected(places, ".exe")) {
        const QFileInfo info(file);
        if (kindOf(file) != Fenk::ExecutableKind::Program || isOfWine(file))
            continue;
        const QString path = windowsPath(bottlePath, file);
        const QUuid id = QUuid::createUuidV5(Namespace, bottle + '\n' + path.toLower());
        records.append(QJsonObject{{"id", id.toString(QUuid::WithoutBraces)},
                                   {"name", info.completeBaseName()},
                                   {"path", path},
                                   {"folder", Programs::folderOf(path)},
                                   {"icon", ""},
                                   {"arguments", ""},
                                   {"envs", QJsonObject()},
                                   {"stars", 0},
                                   {"auto_discovered", true}});
    }
    return records;
}

QStringList dllsBeside(const QString& bottlePath, const QJsonObject& programs) {
    QStringList names;
    for (const QString& name : filesBeside(bottlePath, programs, "*.dll"))
        names += QFileInfo(name).completeBaseName();
    names.removeDuplicates();
    return overridable(names);
}

QStringList updatersBeside(const QString& bottlePath, const QJsonObject& programs) {
    QStringList names;
    for (const QString& name : filesBeside(bottlePath, programs, "*.exe")) {
        if (Fenk::executableKind(name) == Fenk::ExecutableKind::Updater)
            names += name;
    }
    return overridable(names);
}

bool isSameStart(const QJsonObject& one, const QJsonObject& other) {
    return one["path"].toString().compare(other["path"].toString(), Qt::CaseInsensitive) == 0 &&
           one["arguments"].toString().trimmed() == other["arguments"].toString().trimmed();
}

}  // namespace BottleScan
