#pragma once

#include <QJsonObject>
#include <QVector>

#include "backend/ProgramRef.h"

/// One program of the bottle as its record tells it. All texts are untrusted.
struct ProgramEntry {
    QString id;
    QJsonObject record;

    QString name() const;
    /// The record with its id in it, which old ones lack.
    QJsonObject recordWithId() const;
};

/// The programs of a bottle in the order in which the window got to know them, and which of them is current.
/// A plain value.
class EntryList {
public:
    const QVector<ProgramEntry>& entries() const { return m_entries; }
    int current() const { return m_current; }  ///< -1 when there is none
    /// Null without one.
    const ProgramEntry* currentEntry() const;
    int indexOf(const QString& id) const;

    /// Replaces the record of an entry that is there, otherwise appends it. Returns its index.
    int put(const QString& id, const QJsonObject& record);
    /// Puts all of a bottle's programs and drops those that it no longer has. The first becomes current when
    /// none was.
    void setAll(const QJsonObject& programs);
    /// The neighbour becomes current. False for an unknown one.
    bool remove(const QString& id);
    /// False, with a log line, when the index is out of range.
    bool select(int index);

    /// The entry that is made of the file, by its Unix path in the bottle; -1 when there is none.
    int indexOfFile(const QString& bottlePath, const QString& file) const;

private:
    QVector<ProgramEntry> m_entries;
    int m_current = -1;
};
