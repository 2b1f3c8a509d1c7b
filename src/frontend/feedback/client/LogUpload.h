#pragma once

#include <QObject>
#include <QStringList>
#include <functional>
#include <memory>

class QTemporaryDir;

/// Uploads what is known of one bottle: asks the service where it is, copies the files in the background
/// (LogCollection), and hands the copies to UploadFilesManager. The copies can be made, and read, before. Use
/// an object once: it ends in exactly one finished(), and in none when it is deleted first, which also
/// cancels the upload and removes the copies. GUI thread.
class LogUpload : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
    ~LogUpload() override;

    /// Files that a user adds to a rating.
    static const char SuggestionDirectory[];
    /// Instead of SuggestionDirectory.
    void setSuggestionDirectory(const QString& path) { m_suggestionDirectory = path; }

    /// A directory of copies, which is removed with the last reference.
    using Copies = std::shared_ptr<QTemporaryDir>;
    using CopiesHandler = std::function<void(const Copies&)>;
    /// Copies the logs without uploading them. The handler gets null where there is nothing; it is not called
    /// when context is destroyed first.
    static void copyLogs(const QString& bottleName, QObject* context, const CopiesHandler& handler);
    /// The same for what uploadConfiguration() sends.
    static void copyConfiguration(const QString& bottleName, const QString& suggestionDirectory,
                                  QObject* context, const CopiesHandler& handler);

    /// The logs, for a report.
    void collectLogs(const QString& bottleName);
    /// What copyLogs() has collected.
    void uploadLogs(const Copies& copies);
    /// The bottle's settings and the files of SuggestionDirectory, for a rating. Files that were uploaded, or
    /// should have been, are removed at the end.
    void uploadConfiguration(const QString& bottleName);

Q_SIGNALS:
    /// The key of the archive for the report; empty when nothing was uploaded.
    void finished(const QString& fileKey);

private:
    void finish(const QString& fileKey);
    void removeSuggestions();

    Copies m_copies;
    QString m_suggestionDirectory = SuggestionDirectory;
    QStringList m_suggestions;  ///< files of it that are part of this upload
    int m_upload = 0;           ///< number of the upload under way
};
