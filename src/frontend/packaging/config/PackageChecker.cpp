#include "packaging/config/PackageChecker.h"

#include <QDebug>
#include <QPointer>
#include <algorithm>
#include <memory>
#include <utility>

#include "backend/BottlesConfig.h"
#include "backend/InBackground.h"
#include "backend/WindowsPath.h"
#include "packaging/config/PackageDirectories.h"
#include "packaging/config/PackageFiles.h"

namespace {

const char DefaultIcon[] = "cxb_app_default_icon";

void addPrograms(const QJsonObject& programs, const QString& bottleDir, PackageEntries* entries) {
    for (auto program = programs.begin(); program != programs.end(); ++program) {
        const QJsonObject record = program->toObject();
        const QString link = record.value("linkpath").toString();
        PackageEntry entry;
        entry.name = record.value("name").toString();
        entry.icon = record.value("icon").toString(DefaultIcon);
        entry.path = link.isEmpty() ? record.value("path").toString() : link;
        entry.isLnkfile = !link.isEmpty() || entry.path.endsWith(".lnk", Qt::CaseInsensitive);
        if (WindowsPath::isWindowsPath(entry.path))
            entry.path = WindowsPath::toUnix(bottleDir, entry.path);
        entries->insert(program.key(), entry);
    }
}

bool isInBottle(const PackageEntry& entry, const QString& bottleDir) {
    return PackageDirectories::isInside(PackageDirectories::canonical(bottleDir),
                                        PackageDirectories::canonical(entry.path));
}

void readFile(const QString& bottleDir, PackageEntries* entries) {
    const PackageFiles files(bottleDir);
    if (!files.exists(PackageFiles::SourceName))
        return;
    const QJsonObject stored = files.read(PackageFiles::SourceName);
    for (auto item = stored.begin(); item != stored.end(); ++item) {
        const auto entry = entries->find(item.key());
        if (entry == entries->end()) {
            qInfo().nospace().noquote() << "Program " << item.key() << " not in bottles config. skip it.";
            continue;
        }
        entry->read(item->toObject());
        entry->inBottles = isInBottle(*entry, bottleDir);
        if (PackageDirectories::isNearRoot(PackageDirectories::canonical(entry->dirToPackage)))
            entry->dirToPackage.clear();
        entry->selected = true;
    }
}

void refresh(const QString& bottleDir, PackageEntry* entry) {
    if (!entry->selected && isInBottle(*entry, bottleDir)) {
        qInfo().nospace().noquote() << "exe path " << entry->path << " is in bottles";
        entry->inBottles = true;
        entry->selected = true;
    }
    entry->pathPackaged = PackageDirectories::pathPackaged(*entry, bottleDir, PackageDirectories::canonical);
}

enum class Wish { Directory, Other };

/// Null, with a line in the log, for an unknown program and for one of the bottle, which goes along as it is.
PackageEntry* changeable(const QString& id, Wish wish, PackageEntries* entries) {
    const auto entry = entries->find(id);
    if (entry == entries->end()) {
        qDebug().nospace().noquote() << "uuid " << id << " not found";
        return nullptr;
    }
    if (!entry->inBottles)
        return &*entry;
    const QLatin1String start("exe has in bottles, do nothing: ");
    if (wish == Wish::Directory)
        qWarning().nospace().noquote() << start << entry->name;
    else
        qInfo().nospace().noquote() << start << entry->path;
    return nullptr;
}

}  // namespace

void PackageChecker::load(const QString& bottleName) {
    m_bottleName = bottleName;
    m_state = State::Loading;
    Q_EMIT update({});
    BottlesConfig::instance()->watchBottle(
        bottleName, this, [this, bottleName](const BusResult& result) { take(bottleName, result.object()); });
}

void PackageChecker::take(const QString& bottleName, const QJsonObject& bottle) {
    ++m_table;
    m_changes.clear();
    m_entries.clear();
    m_bottleName = bottleName;
    m_bottleDir = bottle.value("Path").toString();
    if (m_bottleDir.isEmpty()) {
        qWarning().nospace().noquote() << "No config found for: " << bottleName;
        m_state = State::Missing;
        Q_EMIT update({});
        return;
    }
    m_state = State::Loading;
    const QJsonObject programs = bottle.value("External_Programs").toObject();
    enqueue([programs, directory = m_bottleDir](PackageEntries* entries) {
        addPrograms(programs, directory, entries);
        readFile(directory, entries);
        for (PackageEntry& entry : *entries)
            refresh(directory, &entry);
        return entries->isEmpty() ? QStringList(QString()) : entries->keys();
    });
}

void PackageChecker::enqueue(const Work& work, const std::function<void()>& then) {
    m_changes.enqueue({work, then});
    startNext();
}

void PackageChecker::startNext() {
    if (m_isWorking || m_changes.isEmpty())
        return;
    m_isWorking = true;
    const Change change = m_changes.dequeue();
    using Result = std::pair<PackageEntries, QStringList>;
    inBackground(
        this,
        [work = change.work, entries = m_entries] {
            Result result{entries, {}};
            result.second = work(&result.first);
            return result;
        },
        [this, then = change.then, table = m_table](const Result& result) {
            m_isWorking = false;
            if (table == m_table) {
                m_entries = result.first;
                if (m_state == State::Loading)
                    m_state = State::Ready;
                for (const QString& id : result.second)
                    Q_EMIT update(id);
                if (then)
                    then();
            }
            startNext();
        });
}

QJsonObject PackageChecker::toJson(const PackageEntries& entries) {
    QJsonObject object;
    for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
        if (entry->selected)
            object.insert(entry.key(), entry->toJson());
    }
    return object;
}

void PackageChecker::save(QObject* context, const std::function<void(bool)>& then) {
    const auto isWritten = std::make_shared<bool>(false);
    enqueue(
        [isWritten, directory = m_bottleDir](PackageEntries* entries) {
            *isWritten = !directory.isEmpty() &&
                         PackageFiles(directory).write(PackageFiles::SourceName, toJson(*entries));
            return QStringList();
        },
        [isWritten, then, context = QPointer<QObject>(context)] {
            if (context)
                then(*isWritten);
        });
}

int PackageChecker::selectedCount() const {
    return int(std::count_if(m_entries.begin(), m_entries.end(),
                             [](const PackageEntry& entry) { return entry.selected; }));
}

void PackageChecker::select(const QString& id) {
    enqueue([id, directory = m_bottleDir](PackageEntries* entries) {
        const auto entry = entries->find(id);
        if (entry == entries->end())
            return QStringList();
        refresh(directory, &*entry);
        entry->selected = true;
        return QStringList(id);
    });
}

void PackageChecker::unselect(const QString& id) {
    enqueue([id](PackageEntries* entries) {
        PackageEntry* entry = changeable(id, Wish::Other, entries);
        if (!entry)
            return QStringList();
        entry->selected = false;
        return QStringList(id);
    });
}

void PackageChecker::setOnlyCopyExe(const QString& id) {
    enqueue([id, directory = m_bottleDir](PackageEntries* entries) {
        PackageEntry* entry = changeable(id, Wish::Other, entries);
        if (!entry)
            return QStringList();
        entry->onlyCopyExe = true;
        refresh(directory, entry);
        return QStringList(id);
    });
}

void PackageChecker::setDirectory(const QString& id, const QString& directory) {
    enqueue([id, directory, bottleDir = m_bottleDir](PackageEntries* entries) {
        return changeable(id, Wish::Directory, entries)
                   ? PackageDirectories::assign(entries, id, directory, bottleDir,
                                                PackageDirectories::canonical)
                   : QStringList();
    });
}
