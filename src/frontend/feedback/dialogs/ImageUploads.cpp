#include "feedback/dialogs/ImageUploads.h"

#include <QDebug>
#include <QFileInfo>
#include <QTemporaryDir>
#include <algorithm>

#include "backend/InBackground.h"
#include "feedback/client/UploadFilesManager.h"
#include "feedback/client/UploadPlace.h"
#include "feedback/dialogs/FeedbackForm.h"

using FeedbackRules::MaximumImages;
using Verdict = ReportPicture::Verdict;

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
    if (!m_copies)
        m_copies = std::make_shared<QTemporaryDir>(UploadPlace::newPictures());
    if (!m_copies->isValid()) {
        qWarning().noquote() << "no directory for pictures:" << m_copies->errorString();
        m_copies.reset();
        Q_EMIT refused(Verdict::Unreadable, QFileInfo(files.value(0)).fileName());
        return;
    }
    m_isReading = true;
    Q_EMIT updated();
    const int room = MaximumImages - m_images.size();
    inBackground(
        this,
        [files, room, copies = m_copies, number = m_nextNumber] {
            return ReportPicture::takeAll(files, room, copies->path(), number);
        },
        [this](const QVector<ReportPicture>& pictures) { take(pictures); });
}

void ImageUploads::take(const QVector<ReportPicture>& pictures) {
    m_isReading = false;
    QVector<Verdict> told;
    for (const ReportPicture& picture : pictures) {
        if (picture.verdict != Verdict::Good) {
            qWarning().noquote() << "picture not taken:" << picture.name << int(picture.verdict);
            if (!told.contains(picture.verdict))
                Q_EMIT refused(picture.verdict, picture.name);
            told += picture.verdict;
            continue;
        }
        Image image;
        image.id = QString("uploaded_image_%1").arg(m_nextNumber++);
        image.picture = picture;
        if (m_hasService) {
            image.state = State::Uploading;
            image.upload = UploadFilesManager::instance()->addTask({picture.copy}, UploadFilesTask::Image);
        }
        m_images += image;
        Q_EMIT added(image.id);
    }
    Q_EMIT updated();
    if (!m_waiting.isEmpty()) {
        const QStringList files = m_waiting;
        m_waiting.clear();
        add(files);
    }
}

void ImageUploads::remove(const QString& id) {
    const Image* image = find(id);
    if (!image)
        return;
    if (image->state == State::Uploading)
        UploadFilesManager::instance()->cancel(image->upload);
    QFile::remove(image->picture.copy);
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

bool ImageUploads::isFull() const {
    return m_images.size() >= MaximumImages;
}

bool ImageUploads::isUnderWay() const {
    return m_isReading || std::any_of(m_images.begin(), m_images.end(),
                                      [](const Image& image) { return image.state == State::Uploading; });
}

const ImageUploads::Image* ImageUploads::find(const QString& id) const {
    const auto image =
        std::find_if(m_images.begin(), m_images.end(), [&id](const Image& each) { return each.id == id; });
    return image == m_images.end() ? nullptr : &*image;
}
