#include "feedback/dialogs/ImageUploads.h"

#include <QDebug>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QThreadPool>
#include <algorithm>

#include "backend/InBackground.h"
#include "feedback/client/UploadFilesManager.h"
#include "feedback/client/UploadPlace.h"

using FeedbackRules::MaximumImages;
using Verdict = ReportPicture::Verdict;

namespace {

struct Copied {
    std::shared_ptr<QTemporaryDir> directory;  ///< null when there is none
    QVector<ReportPicture> pictures;
};

/// `directory` is null for the first ones.
Copied copy(const QStringList& files, int room, std::shared_ptr<QTemporaryDir> directory, int firstNumber) {
    if (!directory)
        directory = UploadPlace::make(UploadPlace::newPictures());
    if (directory->isValid())
        return {directory, ReportPicture::takeAll(files, room, directory->path(), firstNumber)};
    qWarning().noquote() << "no directory for pictures:" << directory->errorString();
    ReportPicture none;
    none.verdict = ReportPicture::Verdict::NoRoom;
    none.name = QFileInfo(files.value(0)).fileName();
    return {nullptr, {none}};
}

}  // namespace

ImageUploads::ImageUploads(bool hasService, QObject* parent) : QObject(parent), m_hasService(hasService) {
    auto* uploads = UploadFilesManager::instance();
    connect(uploads, &UploadFilesManager::sigUploadFinished, this,
            [this](UploadFilesTaskStatus status, const QString&, const QString& key, int replyCount) {
                onFinished(status, key, replyCount);
            });
    connect(uploads, &UploadFilesManager::sigUploadProgress, this,
            [this](const QString& path, qint64 sent, qint64) { onProgress(path, sent); });
}

ImageUploads::~ImageUploads() {
    for (const Image& image : qAsConst(m_images)) {
        if (image.state == State::Uploading)
            UploadFilesManager::instance()->cancel(image.upload);
    }
}

void ImageUploads::add(const QStringList& files) {
    if (m_isReading) {
        m_waiting += files;
        return;
    }
    m_isReading = true;
    Q_EMIT updated();
    const int room = MaximumImages - m_images.size();
    inBackground(
        this,
        [files, room, copies = m_copies, number = m_nextNumber] { return copy(files, room, copies, number); },
        [this](const Copied& copied) {
            m_copies = copied.directory;
            take(copied.pictures);
        });
}

void ImageUploads::take(const QVector<ReportPicture>& pictures) {
    m_isReading = false;
    QVector<ReportPicture> told;
    for (const ReportPicture& picture : pictures) {
        if (picture.verdict != Verdict::Good) {
            qWarning().noquote() << "picture not taken:" << picture.name << int(picture.verdict);
            if (std::none_of(told.begin(), told.end(), [&picture](const ReportPicture& each) {
                    return each.verdict == picture.verdict;
                }))
                told += picture;
            continue;
        }
        Image image;
        image.id = QString("uploaded_image_%1").arg(m_nextNumber++);
        image.picture = picture;
        if (m_hasService)
            startUpload(&image);
        m_images += image;
        Q_EMIT added(image.id);
    }
    Q_EMIT updated();
    if (!told.isEmpty())
        Q_EMIT refused(told);
    if (!m_waiting.isEmpty()) {
        const QStringList files = m_waiting;
        m_waiting.clear();
        add(files);
    }
}

void ImageUploads::startUpload(Image* image) {
    m_hasBegunUpload = true;
    image->state = State::Uploading;
    image->sent = 0;
    image->upload = UploadFilesManager::instance()->addTask({image->picture.copy}, UploadFilesTask::Image);
}

void ImageUploads::retry(const QString& id) {
    const auto image =
        std::find_if(m_images.begin(), m_images.end(), [&id](const Image& each) { return each.id == id; });
    if (image == m_images.end() || image->state != State::Failed)
        return;
    startUpload(&*image);
    Q_EMIT changed(id);
    Q_EMIT updated();
}

void ImageUploads::remove(const QString& id) {
    const Image* image = find(id);
    if (!image)
        return;
    if (image->state == State::Uploading)
        UploadFilesManager::instance()->cancel(image->upload);
    QThreadPool::globalInstance()->start(
        [copy = image->picture.copy, directory = m_copies] { QFile::remove(copy); });
    m_images.removeAt(int(image - m_images.constData()));
    Q_EMIT removed(id);
    Q_EMIT updated();
}

void ImageUploads::onFinished(UploadFilesTaskStatus status, const QString& fileKey, int replyCount) {
    const auto image = std::find_if(m_images.begin(), m_images.end(), [replyCount](const Image& each) {
        return each.upload == replyCount && each.state == State::Uploading;
    });
    if (image == m_images.end())
        return;
    const bool isGood = status == UploadFilesTaskStatus::Success;
    image->state = isGood ? State::Uploaded : State::Failed;
    if (isGood) {
        image->key = fileKey;
        qInfo().noquote() << "upload success file_key:" << fileKey;
    } else {
        qWarning().noquote() << "upload failed: " << image->id << fileKey;
    }
    const QString id = image->id;
    Q_EMIT changed(id);
    Q_EMIT updated();
    if (!isGood)
        Q_EMIT uploadFailed();
}

void ImageUploads::onProgress(const QString& path, qint64 bytes) {
    for (Image& image : m_images) {
        if (image.picture.copy != path || bytes <= image.sent)
            continue;
        image.sent = bytes;
        Q_EMIT changed(image.id);
        return;
    }
}

QStringList ImageUploads::keys() const {
    QStringList keys;
    for (const Image& image : m_images) {
        if (image.state == State::Uploaded)
            keys += image.key;
    }
    return keys;
}

QStringList ImageUploads::copies() const {
    QStringList copies;
    for (const Image& image : m_images)
        copies += image.picture.copy;
    return copies;
}

bool ImageUploads::isFull() const {
    return m_images.size() >= MaximumImages;
}

FeedbackRules::Images ImageUploads::state() const {
    using FeedbackRules::Images;
    if (m_isReading || has(State::Uploading))
        return Images::UnderWay;
    return has(State::Failed) ? Images::Failed : Images::Ready;
}

bool ImageUploads::has(State state) const {
    return std::any_of(m_images.begin(), m_images.end(),
                       [state](const Image& image) { return image.state == state; });
}

const ImageUploads::Image* ImageUploads::find(const QString& id) const {
    const auto image =
        std::find_if(m_images.begin(), m_images.end(), [&id](const Image& each) { return each.id == id; });
    return image == m_images.end() ? nullptr : &*image;
}
