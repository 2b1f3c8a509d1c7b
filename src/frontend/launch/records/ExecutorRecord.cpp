#include "launch/records/ExecutorRecord.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QMap>
#include <QSqlError>
#include <QSqlQuery>
#include <QStandardPaths>

#include "launch/bottle/PrivateBottleName.h"

namespace {

const char ConnectionName[] = "rightClickRecord";
int users = 0;  // objects that use the connection

struct LogTexts {
    const char* prepare;
    const char* run;
};

bool run(QSqlQuery& query, const char* statement, const QMap<QString, QString>& values,
         const LogTexts& logTexts) {
    if (!query.prepare(statement)) {
        qWarning() << logTexts.prepare << query.lastError();
        return false;
    }
    for (auto value = values.begin(); value != values.end(); ++value)
        query.bindValue(value.key(), value.value());
    if (query.exec())
        return true;
    qWarning() << logTexts.run << query.lastError();
    return false;
}

}  // namespace

ExecutorRecord::ExecutorRecord(QObject* parent)
    : QObject(parent),
      m_dataDir(QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) + "/data/"),
      m_file(m_dataDir + "/right_click_record") {
    ++users;
    if (QSqlDatabase::contains(ConnectionName)) {
        m_database = QSqlDatabase::database(ConnectionName, false);
        return;
    }
    m_database = QSqlDatabase::addDatabase("QSQLITE", ConnectionName);
    m_database.setDatabaseName(m_file);
    // An interrupted creation leaves an empty file.
    if (QFileInfo(m_file).size() > 0)
        m_database.open();
    else
        makeTable();
}

ExecutorRecord::~ExecutorRecord() {
    m_database = QSqlDatabase();
    if (--users == 0)
        QSqlDatabase::removeDatabase(ConnectionName);
}

void ExecutorRecord::makeTable() {
    QDir().mkpath(m_dataDir);
    if (m_database.isOpen())
        m_database.close();
    m_database.open();
    QSqlQuery query(m_database);
    if (!query.exec("CREATE TABLE IF NOT EXISTS record (md5 TEXT,bottlename TEXT,PRIMARY KEY(md5));"))
        qWarning() << "record table create failed" << query.lastError();
}

QString ExecutorRecord::bottleForFile(const QString& path) {
    const QString key = partialFileMd5(path);
    QSqlQuery query(m_database);
    if (key.isEmpty() || !run(query, "SELECT bottlename FROM record WHERE md5 = :md5", {{":md5", key}},
                              {"query record prepare error:", "query error:"}))
        return {};
    const QString bottle = query.next() ? query.value(0).toString() : QString();
    query.finish();
    return bottle;
}

bool ExecutorRecord::addRecord(const QString& path, const QString& bottleName) {
    const QString key = partialFileMd5(path);
    QSqlQuery query(m_database);
    return !key.isEmpty() && run(query, "INSERT INTO record (md5, bottlename) VALUES (:md5, :bottlename)",
                                 {{":md5", key}, {":bottlename", bottleName}},
                                 {"add record prepare error:", "add record error:"});
}

void ExecutorRecord::removeRecords(const QString& bottleName) {
    QSqlQuery query(m_database);
    run(query, "DELETE FROM record WHERE bottlename = :bottlename", {{":bottlename", bottleName}},
        {"delete record prepare error:", "delete record error:"});
}
