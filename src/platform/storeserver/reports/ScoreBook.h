#pragma once

#include <mutex>

#include "storeserver/catalogue/Sql.h"
#include "storeserver/catalogue/Votes.h"

namespace StoreServer {

/// The last score that each device has given each application, in a SQLite file and in memory. A score that
/// another program keeps from being written is written later. For any thread.
class ScoreBook {
public:
    static constexpr qint64 LifeMs = qint64(2 * 365) * 24 * 60 * 60 * 1000;  ///< a score is forgotten then

    /// A damaged file is moved aside, with a warning. Throws ReportError.
    explicit ScoreBook(const QString& file);

    /// In place of an earlier vote of the device. Throws SqlError if it cannot be kept.
    void enter(const QString& appName, const Vote& vote);
    VotesByName votes() const;

    /// Writes what could not be written before; logs a failure.
    void flush();
    void forgetOld(qint64 nowMs);

    /// The votes in a file, which a server may be using; changes nothing. Throws SqlError.
    static VotesByName read(const QString& file);

private:
    struct Entry {
        QString app;
        Vote vote;
    };

    void open(const QString& file);
    bool write();

    mutable std::mutex m_mutex;
    std::unique_ptr<SqlDatabase> m_database;
    VotesByName m_votes;
    QVector<Entry> m_unwritten;
    bool m_isWarned = false;
};

}  // namespace StoreServer
