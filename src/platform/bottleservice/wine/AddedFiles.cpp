#include "bottleservice/wine/AddedFiles.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <functional>

#include "bottleservice/bottles/BottleScan.h"
#include "bottleservice/files/AtomicFile.h"
#include "bottleservice/files/FileTree.h"
#include "fenk/system/RegularFile.h"

namespace {

constexpr int MaximumEntries = 500000;
constexpr qint64 MaximumMadeBytes = 64 * 1024 * 1024;
const char MadeFiles[] = "/setup-files.json";

/// Paths in lower case, since case does not matter in Windows.
const char* const Expected[] = {
    // Files of the service and the application.
    "^(bottle\\.yml|launch\\.json|assosiate\\.json|setup-(manifest\\.yml|files\\.json)|fileinfo\\.cache)$",
    "^(logs|icons)/",
    // Files of Wine: the registry, also an unfinished one, and what its processes write there.
    "^((system|user|userdef)\\.reg|reg[0-9a-f]+\\.tmp)$",
    "^(wineserver|\\.update-timestamp)$",
    // Files of Wine's plug and play and spooler, which may be made after the template.
    "^drive_c/windows/inf/[^/]*\\.pnf$",
    "^drive_c/windows/system32/spool/",
    // Logs and temporary files of Windows itself.
    "^drive_c/windows/(temp|logs)/",
    "^drive_c/windows/[^/]*\\.log$",
    // Caches of wininet.
    "^drive_c/users/[^/]+/appdata/local/microsoft/windows/(inetcookies|inetcache|history|temporary internet "
    "files)/",
    "^drive_c/users/[^/]+/(local settings/)?(cookies|history|temporary internet files)/index\\.dat$",
    // What a killed installer leaves in the user's directory for temporary files. Anything with a proper name
    // there may be a program that was unpacked.
    "^drive_c/users/[^/]+/(appdata/local/|local settings/)?temp/(~[^/]*|[^/]*\\.(tmp|log))(/|$)",
};

QRegularExpression expectedPattern() {
    QStringList parts;
    for (const char* part : Expected)
        parts += part;
    return QRegularExpression(parts.join('|'));
}

/// Some of Wine's own files may be added to a bottle after the template was made.
bool isOfWine(const QString& relative, const QFileInfo& file) {
    return relative.startsWith("drive_c/windows/", Qt::CaseInsensitive) &&
           BottleScan::isOfWine(file.filePath());
}

bool isOfTemplate(const QFileInfo& file, const QString& original) {
    const QFileInfo before(original);
    if (!before.isSymLink() && before.isFile() && before.size() == file.size() &&
        before.lastModified() == file.lastModified())
        return true;
    return FileTree::sameContent(original, file.filePath());
}

QString stampOf(const QFileInfo& file) {
    return QString("%1 %2").arg(file.size()).arg(file.lastModified().toMSecsSinceEpoch());
}

QJsonObject readRecord(const QString& bottlePath) {
    const QByteArray text =
        Fenk::RegularFile::read(bottlePath + MadeFiles, MaximumMadeBytes).value_or(QByteArray());
    return QJsonDocument::fromJson(text).object();
}

/// Calls `onAdded` for each file that is not of the template. False when not everything could be read.
bool walk(const QString& bottlePath, const QString& templatePath, const std::atomic_bool& cancelled,
          const std::function<void(const QString& relative, const QFileInfo& file)>& onAdded) {
    if (!QFileInfo(templatePath + "/drive_c/windows").isDir() || !QFileInfo(bottlePath + "/drive_c").isDir())
        return false;
    QStringList directories{QString()};
    int entries = 0;
    while (!directories.isEmpty()) {
        const QString directory = directories.takeLast();
        const QFileInfo place(bottlePath + '/' + directory);
        if (cancelled || !place.isReadable() || !place.isExecutable())
            return false;
        const auto found =
            QDir(place.filePath())
                .entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
        for (const QFileInfo& entry : found) {
            const QString relative = directory + entry.fileName();
            if (++entries > MaximumEntries)
                return false;
            if (entry.isSymLink())
                continue;
            if (entry.isDir())
                directories += relative + '/';
            else if (!AddedFiles::isExpected(relative) &&
                     !isOfTemplate(entry, templatePath + '/' + relative) && !isOfWine(relative, entry))
                onAdded(relative, entry);
        }
    }
    return true;
}

}  // namespace

bool AddedFiles::isExpected(const QString& relative) {
    static const QRegularExpression pattern = expectedPattern();
    return pattern.match(relative.toLower()).hasMatch();
}

QString AddedFiles::record(const QString& directory, const QString& templatePath,
                           const std::atomic_bool& cancelled) {
    QJsonObject made;
    if (!walk(directory, templatePath, cancelled, [&made](const QString& relative, const QFileInfo& file) {
            made.insert(relative, stampOf(file));
        }))
        return "The files of the new bottle could not be listed.";
    QString error;
    AtomicFile::replace(directory + MadeFiles, QJsonDocument(made).toJson(QJsonDocument::Compact), &error,
                        AtomicFile::Safety::Quick);
    return error;
}

QSet<QString> AddedFiles::unchanged(const QString& bottlePath) {
    QSet<QString> paths;
    const QJsonObject made = readRecord(bottlePath);
    for (auto it = made.begin(); it != made.end(); ++it) {
        const QFileInfo file(bottlePath + '/' + it.key());
        if (it.value().toString() == stampOf(file))
            paths += file.filePath();
    }
    return paths;
}

AddedFiles AddedFiles::of(const QString& bottlePath, const QString& templatePath,
                          const std::atomic_bool& cancelled) {
    AddedFiles added;
    const QJsonObject made = readRecord(bottlePath);
    added.isComplete =
        walk(bottlePath, templatePath, cancelled, [&](const QString& relative, const QFileInfo& file) {
            if (made[relative].toString() == stampOf(file))
                return;
            if (added.first.isEmpty())
                added.first = file.filePath();
            if (relative.endsWith(".exe", Qt::CaseInsensitive) &&
                !relative.startsWith("drive_c/windows/", Qt::CaseInsensitive) &&
                added.executables.size() < MaximumExecutables)
                added.executables += file.filePath();
        });
    return added;
}
