#include "storeserver/reports/ScoreBook.h"

#include <fcntl.h>

#include <QDateTime>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <algorithm>

#include "fenk/system/OwnedFd.h"
#include "storeserver/reports/ReportError.h"

namespace StoreServer {

namespace {

const char Schema[] = R"(
PRAGMA journal_mode = WAL;
PRAGMA synchronous = NORMAL;
CREATE TABLE IF NOT EXISTS scores (
    app TEXT NOT NULL, device TEXT NOT NULL, score INTEGER NOT NULL, time INTEGER NOT NULL,
    network TEXT NOT NULL DEFAULT '', PRIMARY KEY (app, device)) WITHOUT ROWID;
)";
constexpr int MostUnwritten = 10000;
constexpr int Hexadecimal = 16;
constexpr int DigitsOfMark = 16;

std::string_view view(const QByteArray& bytes) {
    return {bytes.constData(), size_t(bytes.size())};
}

QByteArray digits(quint64 mark) {
    return mark == 0 ? QByteArray() : QByteArray::number(mark, Hexadecimal).rightJustified(DigitsOfMark, '0');
}

/// Books of before networks were counted have one column less.
bool hasNetworks(const SqlDatabase& database) {
    SqlStatement select(database, "SELECT 1 FROM pragma_table_info('scores') WHERE name = 'network'");
    return select.step();
}

VotesByName readVotes(const SqlDatabase& database) {
    VotesByName votes;
    const char* columns = hasNetworks(database) ? "SELECT app, device, score, time, network FROM scores"
                                                : "SELECT app, device, score, time, '' FROM scores";
    SqlStatement select(database, columns);
    const auto text = [&select](int column) {
        return QByteArray::fromStdString(std::string(select.text(column)));
    };
    while (select.step())
        votes[QString::fromUtf8(text(0))].append({text(1).toULongLong(nullptr, Hexadecimal),
                                                  text(4).toULongLong(nullptr, Hexadecimal),
                                                  int(select.number(2)), select.number(3)});
    return votes;
}

void put(VotesByName& votes, const QString& app, const Vote& vote) {
    QVector<Vote>& all = votes[app];
    const auto known = std::find_if(all.begin(), all.end(),
                                    [&vote](const Vote& other) { return other.device == vote.device; });
    if (known == all.end())
        all.append(vote);
    else
        *known = vote;
}

}  // namespace

ScoreBook::ScoreBook(const QString& file) {
    try {
        open(file);
    } catch (const SqlError& error) {
        m_database.reset();
        const QString aside = file + ".damaged-" + QDateTime::currentDateTimeUtc().toString("yyyyMMddHHmmss");
        if (!error.isDamage() || !QFile::rename(file, aside))
            throw ReportError(QString("%1 cannot be used: %2.").arg(file, error.what()));
        for (const char* suffix : {"-wal", "-shm"})
            QFile::remove(file + suffix);
        qWarning().noquote() << file
                             << "is damaged (" + QString(error.what()) + "), new scores begin; it is now"
                             << aside;
        try {
            open(file);
        } catch (const SqlError& again) {
            throw ReportError(QString("%1 cannot be made: %2.").arg(file, again.what()));
        }
    }
}

/// Never waits for another program.
void ScoreBook::open(const QString& file) {
    // SQLite gives its other files the same rights.
    Fenk::OwnedFd(::open(QFile::encodeName(file).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    m_database =
        std::make_unique<SqlDatabase>(QFile::encodeName(file).toStdString(),
                                      SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX);
    m_database->run(Schema);
    if (!hasNetworks(*m_database))
        m_database->run("ALTER TABLE scores ADD COLUMN network TEXT NOT NULL DEFAULT ''");
    m_votes = readVotes(*m_database);
}

VotesByName ScoreBook::read(const QString& file) {
    // Without a journal nobody writes; to read a book with one as others do, SQLite would make files.
    const bool isQuiet = QFileInfo(file + "-wal").size() == 0;
    const QByteArray address =
        "file:" + QFile::encodeName(file).toPercentEncoding("/") + (isQuiet ? "?immutable=1" : "?mode=ro");
    return readVotes(SqlDatabase(address.toStdString(), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI));
}

void ScoreBook::enter(const QString& appName, const Vote& vote) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_unwritten.size() >= MostUnwritten)
        throw SqlError("too many scores are not written yet");
    const QString app = voteKey(appName);
    m_unwritten.append({app, vote});
    try {
        write();
    } catch (const SqlError&) {
        m_unwritten.removeLast();
        throw;
    }
    put(m_votes, app, vote);
}

/// False if another program keeps it from that.
bool ScoreBook::write() {
    try {
        m_database->run("BEGIN IMMEDIATE");
        SqlStatement insert(*m_database, "INSERT OR REPLACE INTO scores VALUES (?1, ?2, ?3, ?4, ?5)");
        for (const Entry& entry : qAsConst(m_unwritten)) {
            const QByteArray app = entry.app.toUtf8();
            const QByteArray device = digits(entry.vote.device);
            const QByteArray network = digits(entry.vote.network);
            insert.bind(1, view(app))
                .bind(2, view(device))
                .bind(3, entry.vote.score)
                .bind(4, entry.vote.timeMs)
                .bind(5, view(network))
                .run();
        }
        m_database->run("COMMIT");
    } catch (const SqlError& error) {
        if (sqlite3_get_autocommit(m_database->handle()) == 0)
            sqlite3_exec(m_database->handle(), "ROLLBACK", nullptr, nullptr, nullptr);
        if (!error.isBusy())
            throw;
        return false;
    }
    m_unwritten.clear();
    return true;
}

VotesByName ScoreBook::votes() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_votes;
}

void ScoreBook::flush() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_unwritten.isEmpty())
        return;
    try {
        write();
        m_isWarned = false;
    } catch (const SqlError& error) {
        if (!m_isWarned)
            qWarning("scores cannot be written: %s", error.what());
        m_isWarned = true;
    }
}

void ScoreBook::forgetOld(qint64 nowMs) {
    const qint64 oldest = nowMs - LifeMs;
    const auto isOld = [oldest](const Vote& vote) { return vote.timeMs < oldest; };
    const std::lock_guard<std::mutex> lock(m_mutex);
    bool isAny = false;
    for (auto votes = m_votes.begin(); votes != m_votes.end(); ++votes) {
        if (!std::any_of(votes->cbegin(), votes->cend(), isOld))
            continue;
        isAny = true;
        votes->erase(std::remove_if(votes->begin(), votes->end(), isOld), votes->end());
    }
    if (!isAny)
        return;
    try {
        SqlStatement(*m_database, "DELETE FROM scores WHERE time < ?1").bind(1, oldest).run();
    } catch (const SqlError& error) {
        qWarning("old scores cannot be removed: %s", error.what());
    }
}

}  // namespace StoreServer
