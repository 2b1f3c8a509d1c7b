#pragma once

#include <QObject>
#include <QStringList>
#include <memory>

class QTemporaryDir;
struct BusResult;

/// Uploads what is known of one bottle: asks the service where it is, collects in the background, and hands
/// the files to UploadFilesManager. Use it once: it ends in exactly one finished(), and in none when it is
/// deleted first, which also cancels the upload and removes the copies. GUI thread.
class LogUpload : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
    ~LogUpload() override;

    /// Files that a user adds to a rating.
    static const char SuggestionDirectory[];
    /// Instead of SuggestionDirectory.
    void setSuggestionDirectory(const QString& path) { m_suggestionDirectory = path; }

    /// The logs, for a report.
    void collectLogs(const QString& bottleName);
    /// The bottle's settings and the files of SuggestionDirectory, for a rating. Files that were uploaded, or
    /// should have been, are removed at the end.
    void uploadConfiguration(const QString& bottleName);

Q_SIGNALS:
    /// The key of the archive for the report; empty when nothing was uploaded.
    void finished(const QString& fileKey);

private:
    void onLogsBottle(const QString& bottleName, const BusResult& result);
    void onRatedBottle(const QString& bottleName, const BusResult& result);
    void upload(const QStringList& paths);
    void finish(const QString& fileKey);
    void removeFiles();

    std::shared_ptr<QTemporaryDir> m_copies;  ///< removes itself when nobody needs it any more
    QString m_suggestionDirectory = SuggestionDirectory;
    QStringList m_suggestions;  ///< files of it that are part of this upload
    int m_upload = 0;           ///< number of the upload under way
};
