#include "packaging/config/PackageChecker.h"

#include <QDebug>
#include <algorithm>

#include "backend/BottlesConfig.h"
#include "backend/WindowsPath.h"
#include "packaging/config/PackageDirectories.h"
#include "packaging/config/PackageFiles.h"

namespace {
const char DefaultIcon[] = "cxb_app_default_icon";
}

void PackageChecker::load(const QString& bottleName) {
    BottlesConfig::instance()->watchBottle(
        bottleName, this, [this, bottleName](const BusResult& result) { take(bottleName, result.object()); });
}

void PackageChecker::take(const QString& bottleName, const QJsonObject& bottle) {
    m_entries.clear();
    m_bottleName = bottleName;
    m_bottleDir = bottle.value("Path").toString();
    if (m_bottleDir.isEmpty()) {
        qWarning().nospace().noquote() << "No config found for: " << bottleName;
        return;
    }
    addPrograms(bottle.value("External_Programs").toObject());
    readFile();
    for (const QString& id : m_entries.keys())
        refresh(id);
}

void PackageChecker::addPrograms(const QJsonObject& programs) {
    for (auto program = programs.begin(); program != programs.end(); ++program) {
        const QJsonObject record = program->toObject();
        const QString link = record.value("linkpath").toString();
        PackageEntry entry;
        entry.name = record.value("name").toString();
        entry.icon = record.value("icon").toString(DefaultIcon);
        entry.path = link.isEmpty() ? record.value("path").toString() : link;
        entry.isLnkfile = !link.isEmpty() || entry.path.endsWith(".lnk", Qt::CaseInsensitive);
        if (WindowsPath::isWindowsPath(entry.path))
            entry.path = WindowsPath::toUnix(m_bottleDir, entry.path);
        m_entries.insert(program.key(), entry);
    }
}

void PackageChecker::readFile() {
    const PackageFiles files(m_bottleDir);
    if (!files.exists(PackageFiles::SourceName))
        return;
    const QJsonObject stored = files.read(PackageFiles::SourceName);
    for (auto item = stored.begin(); item != stored.end(); ++item) {
        const auto entry = m_entries.find(item.key());
        if (entry == m_entries.end()) {
            qInfo().nospace().noquote() << "Program " << item.key() << " not in bottles config. skip it.";
            continue;
        }
        entry->read(item->toObject());
        entry->inBottles = isInBottle(*entry);
        if (PackageDirectories::isNearRoot(PackageDirectories::canonical(entry->dirToPackage)))
            entry->dirToPackage.clear();
        entry->selected = true;
    }
}

bool PackageChecker::isInBottle(const PackageEntry& entry) const {
    return PackageDirectories::isInside(PackageDirectories::canonical(m_bottleDir),
                                        PackageDirectories::canonical(entry.path));
}

void PackageChecker::refresh(const QString& id) {
    PackageEntry& entry = m_entries[id];
    if (!entry.selected && isInBottle(entry)) {
        qInfo().nospace().noquote() << "exe path " << entry.path << " is in bottles";
        entry.inBottles = true;
        entry.selected = true;
    }
    entry.pathPackaged = PackageDirectories::pathPackaged(entry, m_bottleDir, PackageDirectories::canonical);
    Q_EMIT update(id);
}

bool PackageChecker::save() const {
    QJsonObject object;
    for (auto entry = m_entries.begin(); entry != m_entries.end(); ++entry) {
        if (entry->selected)
            object.insert(entry.key(), entry->toJson());
    }
    return !m_bottleDir.isEmpty() && PackageFiles(m_bottleDir).write(PackageFiles::SourceName, object);
}

int PackageChecker::selectedCount() const {
    return int(std::count_if(m_entries.begin(), m_entries.end(),
                             [](const PackageEntry& entry) { return entry.selected; }));
}

void PackageChecker::select(const QString& id) {
    if (!m_entries.contains(id))
        return;
    refresh(id);
    m_entries[id].selected = true;
    Q_EMIT update(id);
}

/// Null for an unknown program and for one of the bottle, which goes along as it is.
PackageEntry* PackageChecker::changeable(const QString& id) {
    const auto entry = m_entries.find(id);
    if (entry == m_entries.end()) {
        qDebug().nospace().noquote() << "uuid " << id << " not found";
        return nullptr;
    }
    if (entry->inBottles)
        return nullptr;
    return &*entry;
}

void PackageChecker::unselect(const QString& id) {
    if (PackageEntry* entry = changeable(id)) {
        entry->selected = false;
        Q_EMIT update(id);
    } else if (m_entries.contains(id)) {
        qInfo().nospace().noquote() << "exe has in bottles, do nothing: " << m_entries[id].path;
    }
}

void PackageChecker::setOnlyCopyExe(const QString& id) {
    if (PackageEntry* entry = changeable(id)) {
        entry->onlyCopyExe = true;
        refresh(id);
    } else if (m_entries.contains(id)) {
        qInfo().nospace().noquote() << "exe has in bottles, do nothing: " << m_entries[id].path;
    }
}

void PackageChecker::setDirectory(const QString& id, const QString& directory) {
    if (changeable(id)) {
        for (const QString& changed : PackageDirectories::assign(&m_entries, id, directory, m_bottleDir,
                                                                 PackageDirectories::canonical))
            Q_EMIT update(changed);
    } else if (m_entries.contains(id)) {
        qWarning().nospace().noquote() << "exe has in bottles, do nothing: " << m_entries[id].name;
    }
}
