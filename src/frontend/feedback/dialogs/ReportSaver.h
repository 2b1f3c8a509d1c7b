#pragma once

#include <QJsonObject>
#include <QObject>
#include <QStringList>
#include <atomic>
#include <memory>

class QTemporaryDir;

/// Writes a report into one file instead of sending it: a compressed tar archive with report.json, the
/// directory "pictures" and the directory "logs". The file appears whole or not at all. Each save() ends in
/// one finished(); deleting this object, and cancel(), end the work without one. GUI thread; the work is done
/// in another.
class ReportSaver : public QObject {
    Q_OBJECT
public:
    struct Report {
        QByteArray json;
        QStringList pictures;  ///< paths
        QStringList logs;
    };

    using QObject::QObject;
    ~ReportSaver() override;

    /// `keptAlive` holds the directories of the files for as long as they are read.
    void save(const QString& path, const Report& report,
              const QVector<std::shared_ptr<QTemporaryDir>>& keptAlive);
    void cancel();

Q_SIGNALS:
    /// The error text is in the user's language; empty when the file was written.
    void finished(const QString& path, const QString& errorText);

private:
    std::shared_ptr<std::atomic<bool>> m_isCancelled;  ///< of the save under way; null when there is none
};
