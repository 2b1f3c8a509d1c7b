#pragma once

#include <QByteArray>
#include <QHash>
#include <QVector>

#include "bottleservice/backup/BackupList.h"

/// Where the links of a complete list lead, without a look at the disk. A link is resolved through all other
/// links of the list, at most 40 of them. Upper and lower case count as equal, as for Windows.
class BackupLinks {
public:
    explicit BackupLinks(const BackupList& list);

    /// Whether the link could lead out of the bottle once it is restored: over another link, over a standard
    /// link or a place where Wine makes one, or over a directory of Wine's.
    bool leadsOut(const BackupEntry& link) const;

    /// Whether something else has the link's name but for case. Windows might then mean either.
    bool isAmbiguous(const BackupEntry& link) const;
    /// The same for a standard link of the list.
    bool isTaken(const QByteArray& standardLink) const;

private:
    QHash<QString, QVector<const BackupEntry*>> m_entries;  ///< by folded path
    QHash<QString, int> m_outside;                          ///< folded Wine files and standard links
};
