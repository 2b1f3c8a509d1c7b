#include "storeserver/reports/ScoreBook.h"

#include <QFile>

namespace StoreServer {

namespace {

const char Schema[] = R"(
PRAGMA journal_mode = WAL;
PRAGMA synchronous = NORMAL;
CREATE TABLE IF NOT EXISTS scores (
    app TEXT NOT NULL, device TEXT NOT NULL, score INTEGER NOT NULL, time INTEGER NOT NULL,
    PRIMARY KEY (app, device)) WITHOUT ROWID;
)";
constexpr int BusyMs = 2000;

std::string_view view(const QByteArray& bytes) {
    return {bytes.constData(), size_t(bytes.size())};
}

}  // namespace

ScoreBook::ScoreBook(const QString& file)
    : m_database(QFile::encodeName(file).toStdString(),
                 SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX) {
    sqlite3_busy_timeout(m_database.handle(), BusyMs);  // somebody may be listing the reports
    m_database.run(Schema);
}

void ScoreBook::enter(const QString& appName, const QByteArray& device, int score, qint64 signedMs) {
    const QByteArray app = voteKey(appName).toUtf8();
    const std::lock_guard<std::mutex> lock(m_mutex);
    SqlStatement(m_database,
                 "INSERT INTO scores VALUES (?1, ?2, ?3, ?4) ON CONFLICT (app, device) DO UPDATE"
                 " SET score = excluded.score, time = excluded.time WHERE excluded.time > time")
        .bind(1, view(app))
        .bind(2, view(device))
        .bind(3, score)
        .bind(4, signedMs)
        .run();
    m_isChanged = true;
}

VotesByName ScoreBook::votes() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_isChanged)
        return m_votes;
    VotesByName votes;
    SqlStatement select(m_database, "SELECT app, sum(score), count(*) FROM scores GROUP BY app");
    while (select.step())
        votes.insert(QString::fromStdString(std::string(select.text(0))),
                     {select.number(1), select.number(2)});
    m_votes = votes;
    m_isChanged = false;
    return votes;
}

}  // namespace StoreServer
