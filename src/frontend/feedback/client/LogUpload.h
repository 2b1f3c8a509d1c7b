#pragma once

#include <QObject>
#include <QStringList>
#include <functional>
#include <memory>

class QTemporaryDir;

/// Uploads what is known of one bottle: asks the service where it is, copies the files in the background
/// (LogCollection), and hands the copies to UploadFilesManager. The copies can be read before they are sent.
/// Use it once: it ends in exactly one finished(), and in none when it is deleted first, which also cancels
/// the upload and removes the copies. GUI thread.
class LogUpload : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
    ~LogUpload() override;

    /// Files that a user adds to a rating.
    static const char SuggestionDirectory[];
    /// Instead of SuggestionDirectory.
    void setSuggestionDirectory(const QString& path) { m_suggestionDirectory = path; }

    /// Copies the logs, for a report, or the bottle's settings and the files of SuggestionDirectory, for a
    /// rating. Ends in prepared().
    void prepareLogs(const QString& bottleName);
    void prepareConfiguration(const QString& bottleName);
    /// Sends the copies after prepared().
    void upload();

    /// Both steps.
    void collectLogs(const QString& bottleName);
    /// Files of SuggestionDirectory that were uploaded, or should have been, are removed at the end.
    void uploadConfiguration(const QString& bottleName);

Q_SIGNALS:
    /// Paths of the copies, which live as long as this object or until finished(). None when there is nothing
    /// to send.
    void prepared(const QStringList& files);
    /// The key of the archive for the report; empty when nothing was uploaded.
    void finished(const QString& fileKey);

private:
    struct Gathered {
        QStringList files;        ///< the copies
        QStringList suggestions;  ///< what some of them were made of
    };
    using Gather = std::function<QStringList(const QString& bottlePath, const QString& directory)>;
    void prepare(const QString& bottleName, const Gather& gather);
    void finish(const QString& fileKey);
    void removeSuggestions();

    std::shared_ptr<QTemporaryDir> m_copies;  ///< removes itself when nobody needs it any more
    QString m_suggestionDirectory = SuggestionDirectory;
    QStringList m_suggestions;  ///< files of it that are part of this upload
    bool m_hasFiles = false;
    bool m_isRating = false;
    int m_upload = 0;  ///< number of the upload under way
};
