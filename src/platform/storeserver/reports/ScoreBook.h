#pragma once

#include <mutex>

#include "storeserver/catalogue/Sql.h"
#include "storeserver/catalogue/Votes.h"

namespace StoreServer {

/// The last score that each device has given each application, in a SQLite file. For any thread. All methods
/// throw SqlError.
class ScoreBook {
public:
    explicit ScoreBook(const QString& file);

    /// `device` is a pseudonym. A score that was signed before the one that is known changes nothing.
    void enter(const QString& appName, const QByteArray& device, int score, qint64 signedMs);
    VotesByName votes();

private:
    std::mutex m_mutex;
    SqlDatabase m_database;
    VotesByName m_votes;
    bool m_isChanged = true;
};

}  // namespace StoreServer
