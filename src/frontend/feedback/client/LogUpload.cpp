#include "feedback/client/LogUpload.h"

#include <QDebug>
#include <QDir>
#include <QTemporaryDir>

#include "backend/BottleRecord.h"
#include "backend/BottlesConfig.h"
#include "backend/InBackground.h"
#include "feedback/client/LogCollection.h"
#include "feedback/client/UploadFilesManager.h"
#include "feedback/client/UploadPlace.h"

const char LogUpload::SuggestionDirectory[] = "/tmp/.suggestion_file_path";

LogUpload::~LogUpload() {
    if (m_upload > 0)
        UploadFilesManager::instance()->cancel(m_upload);
    removeFiles();
}

void LogUpload::removeFiles() {
    m_copies.reset();
    if (m_suggestions.isEmpty() || !LogCollection::isOwnDirectory(m_suggestionDirectory))
        return;
    for (const QString& file : qAsConst(m_suggestions))
        QFile::remove(file);
    QDir().rmdir(m_suggestionDirectory);  // unless another rating has put something there
    m_suggestions.clear();
}

void LogUpload::collectLogs(const QString& bottleName) {
    BottlesConfig::instance()->watchBottle(
        bottleName, this, [this, bottleName](const BusResult& result) { onLogsBottle(bottleName, result); });
}

void LogUpload::onLogsBottle(const QString& bottleName, const BusResult& result) {
    const QString path = BottleRecord::path(result.object());
    if (path.isEmpty()) {
        qWarning().noquote() << "bottlePath for " + bottleName + "is empty, nonthing to upload";
        finish({});
        return;
    }
    m_copies = std::make_shared<QTemporaryDir>(UploadPlace::newLogs());
    if (!m_copies->isValid()) {
        qWarning().noquote() << "no directory for logs:" << m_copies->errorString();
        finish({});
        return;
    }
    inBackground(
        this,
        [sources = LogCollection::Sources::of(path), copies = m_copies] {
            LogCollection::gather(sources, copies->path());
        },
        [this] { upload({m_copies->path()}); });
}

void LogUpload::uploadConfiguration(const QString& bottleName) {
    BottlesConfig::instance()->watchBottle(
        bottleName, this, [this, bottleName](const BusResult& result) { onRatedBottle(bottleName, result); });
}

void LogUpload::onRatedBottle(const QString& bottleName, const BusResult& result) {
    const QString path = BottleRecord::path(result.object());
    const QStringList files = LogCollection::ratingFiles(bottleName, path, m_suggestionDirectory);
    if (files.isEmpty()) {
        qInfo("nonthing to up");
        finish({});
        return;
    }
    qInfo().noquote() << "up: " + files.join(", ");
    for (const QString& file : files) {
        if (QFileInfo(file).path() == m_suggestionDirectory)
            m_suggestions += file;
    }
    upload(files);
    qInfo("start apply score");
}

void LogUpload::upload(const QStringList& paths) {
    auto* uploads = UploadFilesManager::instance();
    m_upload = uploads->addTask(paths, UploadFilesTask::Logs);
    connect(uploads, &UploadFilesManager::sigUploadFinished, this,
            [this](UploadFilesTaskStatus status, const QString&, const QString& key, int replyCount) {
                if (replyCount != m_upload)
                    return;
                m_upload = 0;
                finish(status == UploadFilesTaskStatus::Success ? key : QString());
            });
}

void LogUpload::finish(const QString& fileKey) {
    qInfo().noquote() << "configLogKey:" << fileKey;
    removeFiles();
    Q_EMIT finished(fileKey);
}
