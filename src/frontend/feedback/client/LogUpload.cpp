#include "feedback/client/LogUpload.h"

#include <QDebug>
#include <QDir>
#include <QTemporaryDir>

#include "backend/BottleRecord.h"
#include "backend/InBackground.h"
#include "feedback/client/BottleQuery.h"
#include "feedback/client/LogCollection.h"
#include "feedback/client/UploadFilesManager.h"
#include "feedback/client/UploadPlace.h"

namespace {

/// `fill(bottlePath, directory)` runs in the background. Without any copy the handler gets null.
template <class Fill>
void copyFiles(const QString& bottleName, QObject* context, Fill fill,
               const LogUpload::CopiesHandler& handler) {
    BottleQuery::ask(bottleName, context, [context, fill, handler](const BusResult& result) {
        const auto work = [fill, path = BottleRecord::path(result.object())]() -> LogUpload::Copies {
            const auto copies = UploadPlace::make(UploadPlace::newLogs());
            if (!copies->isValid()) {
                qWarning().noquote() << "no directory for logs:" << copies->errorString();
                return nullptr;
            }
            fill(path, copies->path());
            return QDir(copies->path()).isEmpty() ? nullptr : copies;
        };
        inBackground(context, work, handler);
    });
}

}  // namespace

LogUpload::~LogUpload() {
    if (m_upload > 0)
        UploadFilesManager::instance()->cancel(m_upload);
}

void LogUpload::collectLogs(const QString& bottleName, QObject* context, const CopiesHandler& handler) {
    copyFiles(
        bottleName, context,
        [bottleName](const QString& bottlePath, const QString& directory) {
            if (bottlePath.isEmpty())
                qWarning().noquote() << "bottlePath for " + bottleName + "is empty, nonthing to upload";
            else
                LogCollection::gather(LogCollection::Sources::of(bottlePath), directory);
        },
        handler);
}

void LogUpload::collectConfiguration(const QString& bottleName, QObject* context,
                                     const CopiesHandler& handler) {
    copyFiles(
        bottleName, context,
        [bottleName](const QString& bottlePath, const QString& directory) {
            LogCollection::gatherConfiguration(bottleName, bottlePath, directory);
        },
        handler);
}

void LogUpload::uploadConfiguration(const Copies& copies, const QStringList& files) {
    if (copies)
        qInfo().noquote() << "up: " + copies->path();
    else
        qInfo("nonthing to up");
    upload(copies, files);
}

void LogUpload::uploadLogs(const Copies& copies) {
    upload(copies, {});
}

void LogUpload::upload(const Copies& copies, const QStringList& files) {
    if (!copies) {
        finish({});
        return;
    }
    m_copies = copies;
    auto* uploads = UploadFilesManager::instance();
    m_upload = uploads->addTask(QStringList(copies->path()) + files, UploadFilesTask::Logs);
    connect(uploads, &UploadFilesManager::sigUploadFinished, this,
            [this](UploadFilesTaskStatus status, const QString&, const QString& key, int replyCount) {
                if (replyCount == m_upload)
                    finish(status == UploadFilesTaskStatus::Success ? key : QString());
            });
}

void LogUpload::finish(const QString& fileKey) {
    qInfo().noquote() << "configLogKey:" << fileKey;
    m_upload = 0;
    m_copies.reset();
    Q_EMIT finished(fileKey);
}
