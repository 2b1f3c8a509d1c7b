#include "bottleservice/bottles/FoundPrograms.h"

#include <QFileInfo>
#include <QUuid>
#include <algorithm>

#include "bottleservice/bottles/ProgramIcon.h"
#include "bottleservice/bottles/WindowsPath.h"
#include "fenk/system/ExecutableKind.h"

QJsonObject FoundPrograms::record(const QString& name, const QString& path, const QString& arguments) const {
    return {{"id", QUuid::createUuid().toString(QUuid::WithoutBraces)},
            {"name", name},
            {"path", path},
            {"arguments", arguments}};
}

void FoundPrograms::addIcon(QJsonObject* record, const QStringList& files) const {
    record->insert("icon", ProgramIcon::extract(m_script, m_bottlePath, record->value("id").toString(), files,
                                                m_cancelled));
}

QVector<QJsonObject> FoundPrograms::ofShortcuts(const QVector<BottleScan::Shortcut>& shortcuts,
                                                const QJsonObject& known) const {
    QVector<QJsonObject> found;
    for (const BottleScan::Shortcut& shortcut : shortcuts) {
        if (m_cancelled)
            break;
        const Fenk::ShellLink& link = shortcut.link;
        QJsonObject record = this->record(shortcut.name, link.target, link.arguments);
        if (WindowsPath::isWindowsPath(link.workingDirectory))
            record.insert("folder", link.workingDirectory);
        const auto isSame = [&record](const QJsonValue& other) {
            return BottleScan::isSameStart(record, other.toObject());
        };
        if (std::any_of(known.begin(), known.end(), isSame) ||
            std::any_of(found.begin(), found.end(), isSame))
            continue;
        addIcon(&record, {WindowsPath::toUnix(m_bottlePath, link.iconPath),
                          WindowsPath::toUnix(m_bottlePath, link.target)});
        found.append(record);
    }
    return found;
}

QVector<QJsonObject> FoundPrograms::ofExecutables(const QStringList& files) const {
    QVector<QJsonObject> found;
    for (const QString& file : likely(m_bottlePath, files)) {
        if (m_cancelled)
            break;
        QJsonObject record =
            this->record(QFileInfo(file).completeBaseName(), BottleScan::windowsPath(m_bottlePath, file), {});
        addIcon(&record, {file});
        found.append(record);
    }
    return found;
}

QStringList FoundPrograms::likely(const QString& bottlePath, QStringList files) {
    const QString drive = bottlePath + "/drive_c/";
    const auto depth = [](const QString& path) { return path.count('/'); };
    std::sort(files.begin(), files.end(), [&depth](const QString& one, const QString& other) {
        return std::make_pair(depth(one), one) < std::make_pair(depth(other), other);
    });
    QStringList kept;
    QStringList folders;  // whose subfolders belong to a program in the list
    for (const QString& file : qAsConst(files)) {
        if (kept.size() == MaximumLikely)
            break;
        const QString folder = file.left(file.lastIndexOf('/') + 1);
        const bool isPart = std::any_of(folders.begin(), folders.end(), [&folder](const QString& other) {
            return folder != other && folder.startsWith(other);
        });
        if (!file.startsWith(drive) || isPart || BottleScan::isOfWine(file) ||
            BottleScan::kindOf(file) != Fenk::ExecutableKind::Program)
            continue;
        kept += file;
        if (folder != drive)
            folders += folder;
    }
    return kept;
}
