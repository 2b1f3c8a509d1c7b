#include "bottleservice/backup/BackupLinks.h"

#include <QList>
#include <algorithm>

#include "bottleservice/backup/BackupPath.h"

namespace {

constexpr int MaximumLinks = 40;  // what Linux follows at most

}  // namespace

BackupLinks::BackupLinks(const BackupList& list) {
    for (const BackupEntry& entry : list.entries)
        m_entries[BackupPath::folded(entry.path)] += &entry;
    for (const QVector<QByteArray>& paths : {list.wineFiles, list.standardLinks}) {
        for (const QByteArray& path : paths)
            ++m_outside[BackupPath::folded(path)];
    }
}

bool BackupLinks::isAmbiguous(const BackupEntry& link) const {
    const QString folded = BackupPath::folded(link.path);
    return m_entries.value(folded).size() + m_outside.value(folded) > 1;
}

bool BackupLinks::isTaken(const QByteArray& standardLink) const {
    const QString folded = BackupPath::folded(standardLink);
    return m_entries.contains(folded) || m_outside.value(folded) > 1;
}

bool BackupLinks::leadsOut(const BackupEntry& link) const {
    QByteArray place = BackupPath::parentOf(link.path);
    QList<QByteArray> parts = link.target.split('/');
    for (int links = 0; !parts.isEmpty();) {
        const QByteArray part = parts.takeFirst();
        if (part.isEmpty() || part == ".")
            continue;
        if (part == "..") {
            if (place.isEmpty())
                return true;
            place = BackupPath::parentOf(place);
            continue;
        }
        const QByteArray path = place.isEmpty() ? part : place + '/' + part;
        if (!BackupPath::isInside(path))  // also bounds the work on a stranger's link
            return true;
        const QString folded = BackupPath::folded(path);
        const auto entries = m_entries.value(folded);
        // What is not in the backup may be made later, by Wine or by the service.
        if ((entries.isEmpty() && BackupPath::isStandardLink(folded.toUtf8())) ||
            (m_outside.contains(folded) && !parts.isEmpty()))
            return true;
        const auto next = std::find_if(entries.begin(), entries.end(), [](const BackupEntry* entry) {
            return entry->type == BackupEntry::Type::Link;
        });
        if (next == entries.end()) {
            place = path;
            continue;
        }
        if (++links > MaximumLinks || (*next)->target.startsWith('/'))
            return true;
        place = BackupPath::parentOf((*next)->path);
        parts = (*next)->target.split('/') + parts;
    }
    return false;
}
