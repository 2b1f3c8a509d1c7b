#pragma once

#include <QObject>
#include <QSqlDatabase>

/// Maps a file, by the hash of its content (see partialFileMd5), to the bottle that it last ran in, in an
/// SQLite database of the user. All objects share one connection; it belongs to the thread of the first
/// object and is closed with the last one. Errors are logged and return empty or false.
class ExecutorRecord : public QObject {
    Q_OBJECT
public:
    /// Creates the database if it does not exist.
    explicit ExecutorRecord(QObject* parent);
    ~ExecutorRecord() override;

    QString bottleForFile(const QString& path);
    /// Also false if the file has a record already.
    bool addRecord(const QString& path, const QString& bottleName);
    void removeRecords(const QString& bottleName);

private:
    void makeTable();

    QString m_dataDir;
    QString m_file;
    QSqlDatabase m_database;
};
