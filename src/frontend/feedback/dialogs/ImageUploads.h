#pragma once

#include <QObject>
#include <memory>

#include "feedback/client/UploadFilesTask.h"
#include "feedback/dialogs/FeedbackForm.h"
#include "feedback/dialogs/ReportPicture.h"

class QTemporaryDir;

/// The pictures of one report, at most FeedbackRules::MaximumImages. Each is copied, checked and, where there
/// is a service, uploaded at once. Removing one, and deleting this object, cancels its upload and removes its
/// copy. GUI thread.
class ImageUploads : public QObject {
    Q_OBJECT
public:
    enum class State { Uploading, Uploaded, Failed, Kept };  ///< Kept: there is no service to send it to

    struct Image {
        QString id;  ///< "uploaded_image_" and a number that is not used again
        ReportPicture picture;
        State state = State::Kept;
        qint64 sent = 0;  ///< bytes
        int upload = 0;   ///< number of the task
        QString key;      ///< once it is uploaded
    };

    explicit ImageUploads(bool hasService, QObject* parent = nullptr);
    ~ImageUploads() override;

    /// Does not wait for the files; one call after the other. Those above the limit are dropped.
    void add(const QStringList& files);
    void remove(const QString& id);
    /// Uploads one again that has failed.
    void retry(const QString& id);

    const QVector<Image>& images() const { return m_images; }
    /// Null when there is no such picture.
    const Image* find(const QString& id) const;
    /// Of the uploaded ones.
    QStringList keys() const;
    QStringList copies() const;
    /// Of one picture at least, a removed one too.
    bool hasBegunUpload() const { return m_hasBegunUpload; }
    /// Where the copies lie; null before the first.
    std::shared_ptr<QTemporaryDir> directory() const { return m_copies; }
    bool isFull() const;
    /// Under way are those that are read or uploaded; that counts more than a failure.
    FeedbackRules::Images state() const;
    bool isReading() const { return m_isReading; }

Q_SIGNALS:
    void added(const QString& id);
    void changed(const QString& id);
    void removed(const QString& id);
    /// Pictures that were not taken, once per call of add(): the first one of each verdict.
    void refused(const QVector<ReportPicture>& pictures);
    void uploadFailed();
    /// Whenever images() or state() may be another.
    void updated();

private:
    void take(const QVector<ReportPicture>& pictures);
    void startUpload(Image* image);
    bool has(State state) const;
    void onFinished(UploadFilesTaskStatus status, const QString& fileKey, int replyCount);
    void onProgress(const QString& path, qint64 bytes);
    const bool m_hasService;
    std::shared_ptr<QTemporaryDir> m_copies;  ///< removes itself when no thread writes there any more
    QVector<Image> m_images;
    int m_nextNumber = 0;
    QStringList m_waiting;  ///< files of later calls of add()
    bool m_isReading = false;
    bool m_hasBegunUpload = false;
};
