#include "shell/configuration/rules/EntryList.h"

#include <QDebug>
#include <QFileInfo>

#include "backend/ProgramRecord.h"
#include "backend/WindowsPath.h"

QString ProgramEntry::name() const {
    const QString name = ProgramRecord::name(record).simplified();
    return name.isEmpty() ? id : name;
}

QJsonObject ProgramEntry::recordWithId() const {
    QJsonObject result = record;
    result.insert("id", id);
    return result;
}

const ProgramEntry* EntryList::currentEntry() const {
    return m_current >= 0 && m_current < m_entries.size() ? &m_entries[m_current] : nullptr;
}

int EntryList::indexOf(const QString& id) const {
    for (int i = 0; i < m_entries.size(); ++i) {
        if (m_entries[i].id == id)
            return i;
    }
    return -1;
}

int EntryList::put(const QString& id, const QJsonObject& record) {
    int index = indexOf(id);
    if (index < 0) {
        index = m_entries.size();
        m_entries.append(ProgramEntry{id, {}});
    }
    m_entries[index].record = record;
    if (m_current < 0)
        m_current = 0;
    return index;
}

void EntryList::setAll(const QJsonObject& programs) {
    const QVector<ProgramEntry> before = m_entries;
    for (const ProgramEntry& entry : before) {
        if (!programs.contains(entry.id))
            remove(entry.id);
    }
    for (auto program = programs.begin(); program != programs.end(); ++program)
        put(program.key(), program.value().toObject());
}

bool EntryList::remove(const QString& id) {
    const int index = indexOf(id);
    if (index < 0) {
        qWarning("Entry not found");
        return false;
    }
    m_entries.remove(index);
    if (index < m_current)
        --m_current;
    m_current = qMin(m_current, m_entries.size() - 1);
    return true;
}

bool EntryList::select(int index) {
    if (index < 0 || index >= m_entries.size()) {
        qWarning("Entry not found");
        return false;
    }
    m_current = index;
    return true;
}

int EntryList::indexOfFile(const QString& bottlePath, const QString& file) const {
    const QString wanted = QFileInfo(file).canonicalFilePath();
    for (int i = 0; i < m_entries.size() && !wanted.isEmpty(); ++i) {
        const QString path = ProgramRecord::path(m_entries[i].record);
        const QString found = WindowsPath::isWindowsPath(path) ? WindowsPath::toUnix(bottlePath, path) : path;
        if (QFileInfo(found).canonicalFilePath() == wanted)
            return i;
    }
    return -1;
}
