#pragma once

#include <QObject>
#include <QSqlDatabase>

/// Remembers which bottle a file was last run in, by the key of its content (see partialFileMd5), in a small
/// database of the user's. All objects share one connection, which belongs to the thread of the first and
/// goes with the last. A failure is logged and reads as empty or false.
class ExecutorRecord : public QObject {
    Q_OBJECT
public:
    /// Makes the database if there is none.
    explicit ExecutorRecord(QObject* parent);
    ~ExecutorRecord() override;

    QString bottleForFile(const QString& path);
    /// False also for a file that has been entered already.
    bool addRecord(const QString& path, const QString& bottleName);
    void removeRecords(const QString& bottleName);

private:
    void makeTable();

    QString m_dataDir;
    QString m_file;
    QSqlDatabase m_database;
};
