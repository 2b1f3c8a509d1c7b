#include "storeserver/catalogue/CatalogueWriter.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include "storeserver/catalogue/ListOrder.h"
#include "storeserver/catalogue/SearchText.h"

namespace StoreServer {

namespace {

// The table of applications is slim, since it is what is sorted and searched.
const char Schema[] = R"(
PRAGMA journal_mode = MEMORY;
PRAGMA synchronous = OFF;
PRAGMA cache_size = -8000;
CREATE TABLE apps (
    id INTEGER PRIMARY KEY, key TEXT NOT NULL UNIQUE, category INTEGER NOT NULL, updated INTEGER NOT NULL,
    installations INTEGER NOT NULL, score INTEGER NOT NULL, rank INTEGER NOT NULL,
    en TEXT NOT NULL, zh TEXT NOT NULL);
CREATE TABLE records (id INTEGER PRIMARY KEY, icon TEXT NOT NULL, en BLOB NOT NULL, zh BLOB NOT NULL);
CREATE TABLE manifests (id INTEGER PRIMARY KEY, text BLOB NOT NULL);
CREATE TABLE icons (id INTEGER PRIMARY KEY, name TEXT NOT NULL UNIQUE, data BLOB NOT NULL);
CREATE VIRTUAL TABLE words USING fts5 (text, tokenize = "unicode61 remove_diacritics 2", prefix = '1 2');
CREATE VIRTUAL TABLE triples USING fts5 (text, tokenize = "trigram");
)";

/// One for each order of all applications and of a category's; every index ends in the id by itself.
std::string indexes() {
    std::string statements;
    int count = 0;
    for (const SortField field : {SortField::Updated, SortField::Installations, SortField::Score}) {
        for (const bool isAscending : {false, true}) {
            for (const char* first : {"", "category, "})
                statements += "CREATE INDEX list" + std::to_string(++count) + " ON apps (" + first +
                              listOrder(field, isAscending) + ");";
        }
    }
    return statements;
}

std::string unnamedFile(const QTemporaryDir& directory) {
    if (!directory.isValid())
        throw SqlError(directory.errorString().toStdString());
    return QFile::encodeName(directory.filePath("catalogue")).toStdString();
}

/// A record of the store's clients, but for the address of its icon.
QByteArray recordJson(const AppRecord& app, const QString& (Translated::*in)() const) {
    const QJsonObject record{
        {"appId", app.appId},
        {"appInfoId", app.appInfoId},
        {"appName", (app.names.*in)()},
        {"packageSize", app.size},
        {"packageVersion", app.version},
        {"briefInfo", (app.brief.*in)()},
        {"descInfo", (app.description.*in)()},
        {"score", app.score},
        {"recommend", app.recommend},
        {"devName", app.contributorName},
        {"devEmail", app.contributorEmail},
        {"officialSite", app.site},
        {"downloadUrl", app.download},
    };
    return QJsonDocument(record).toJson(QJsonDocument::Compact);
}

std::string_view view(const QByteArray& bytes) {
    return {bytes.constData(), size_t(bytes.size())};
}

}  // namespace

CatalogueWriter::CatalogueWriter()
    : m_database(unnamedFile(QTemporaryDir()),
                 SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX) {
    m_database.run(Schema + indexes());
}

void CatalogueWriter::rollBack() {
    try {
        m_database.run("ROLLBACK");
    } catch (const SqlError&) {
        // SQLite has rolled back by itself.
    }
}

QStringList CatalogueWriter::appInfoIds() {
    QStringList names;
    SqlStatement select(m_database, "SELECT key FROM apps ORDER BY key");
    while (select.step())
        names += QString::fromStdString(std::string(select.text(0)));
    return names;
}

QString CatalogueWriter::appWithId(qint64 appId) {
    SqlStatement select(m_database, "SELECT key FROM apps WHERE id = ?1");
    return select.bind(1, appId).step() ? QString::fromStdString(std::string(select.text(0))) : QString();
}

void CatalogueWriter::remove(const QString& appInfoId) {
    const QByteArray key = appInfoId.toUtf8();
    SqlStatement find(m_database, "SELECT id FROM apps WHERE key = ?1");
    if (!find.bind(1, view(key)).step())
        return;
    const long long id = find.number(0);
    find.reset();
    for (const char* statement :
         {"DELETE FROM words WHERE rowid = ?1", "DELETE FROM triples WHERE rowid = ?1",
          "DELETE FROM records WHERE id = ?1", "DELETE FROM manifests WHERE id = ?1",
          "DELETE FROM icons WHERE id = ?1", "DELETE FROM apps WHERE id = ?1"})
        SqlStatement(m_database, statement).bind(1, id).run();
}

void CatalogueWriter::add(const AppEntry& entry) {
    const AppRecord& app = entry.record;
    const QByteArray key = app.appInfoId.toUtf8();
    const QByteArray english = SearchText::folded(app.names.english()).toUtf8();
    const QByteArray chinese = SearchText::folded(app.names.chinese()).toUtf8();
    SqlStatement(m_database, "INSERT INTO apps VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9)")
        .bind(1, app.appId)
        .bind(2, view(key))
        .bind(3, app.category)
        .bind(4, app.updated.toJulianDay())
        .bind(5, app.installations)
        .bind(6, app.score)
        .bind(7, app.recommend > 0 ? 0 : 1)
        .bind(8, view(english))
        .bind(9, view(chinese))
        .run();

    const QByteArray icon = entry.icon.servedName(app.appInfoId).toUtf8();
    const QByteArray englishRecord = recordJson(app, &Translated::english);
    const QByteArray chineseRecord = recordJson(app, &Translated::chinese);
    SqlStatement(m_database, "INSERT INTO records VALUES (?1, ?2, ?3, ?4)")
        .bind(1, app.appId)
        .bind(2, view(icon))
        .bind(3, view(englishRecord))
        .bind(4, view(chineseRecord))
        .run();
    SqlStatement(m_database, "INSERT INTO manifests VALUES (?1, ?2)")
        .bind(1, app.appId)
        .bind(2, view(entry.manifest))
        .run();
    if (!icon.isEmpty())
        SqlStatement(m_database, "INSERT INTO icons VALUES (?1, ?2, ?3)")
            .bind(1, app.appId)
            .bind(2, view(icon))
            .bind(3, view(entry.icon.data))
            .run();

    const QString text =
        SearchText::folded(QStringList{app.names.en, app.names.zh, app.appInfoId, app.brief.en, app.brief.zh,
                                       app.description.en, app.description.zh}
                               .join('\n'));
    const QByteArray triples = text.toUtf8();
    const QByteArray words = SearchText::spaced(text).toUtf8();
    SqlStatement(m_database, "INSERT INTO words (rowid, text) VALUES (?1, ?2)")
        .bind(1, app.appId)
        .bind(2, view(words))
        .run();
    SqlStatement(m_database, "INSERT INTO triples (rowid, text) VALUES (?1, ?2)")
        .bind(1, app.appId)
        .bind(2, view(triples))
        .run();
}

void CatalogueWriter::copyTo(const QString& file) {
    const QByteArray name = QFile::encodeName(file);
    SqlStatement(m_database, "VACUUM INTO ?1").bind(1, view(name)).run();
}

}  // namespace StoreServer
