#pragma once

#include <QObject>
#include <QStringList>
#include <functional>
#include <memory>

class QTemporaryDir;

/// Uploads what is known of one bottle. First it asks the service where the bottle is and copies the files in
/// the background (LogCollection), for the user to read; then it hands these copies to UploadFilesManager, so
/// that what was shown is what is sent. Use an object once: it ends in exactly one finished(), and in none
/// when it is deleted first, which also cancels the upload and removes the copies. GUI thread.
class LogUpload : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
    ~LogUpload() override;

    /// A directory of copies, which is removed with the last reference.
    using Copies = std::shared_ptr<QTemporaryDir>;
    using CopiesHandler = std::function<void(const Copies&)>;
    /// Copies the logs. The handler gets null where there is nothing; it is not called when context is
    /// destroyed first.
    static void collectLogs(const QString& bottleName, QObject* context, const CopiesHandler& handler);
    /// The same for the bottle's settings.
    static void collectConfiguration(const QString& bottleName, QObject* context,
                                     const CopiesHandler& handler);

    /// What collectLogs() has collected, for a report. Null ends at once, with an empty key.
    void uploadLogs(const Copies& copies);
    /// What collectConfiguration() has collected, for a rating, and the files that belong to it. Without the
    /// settings nothing is uploaded.
    void uploadConfiguration(const Copies& copies, const QStringList& files);

Q_SIGNALS:
    /// The key of the archive for the report; empty when nothing was uploaded.
    void finished(const QString& fileKey);

private:
    void upload(const Copies& copies, const QStringList& files);
    void finish(const QString& fileKey);

    Copies m_copies;
    int m_upload = 0;  ///< number of the upload under way
};
