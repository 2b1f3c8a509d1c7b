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
    const bool wasBegun = m_upload > 0;
    if (wasBegun)
        UploadFilesManager::instance()->cancel(m_upload);
    m_copies.reset();
    if (wasBegun)
        removeSuggestions();
}

void LogUpload::removeSuggestions() {
    if (m_suggestions.isEmpty() || !LogCollection::isOwnDirectory(m_suggestionDirectory))
        return;
    for (const QString& file : qAsConst(m_suggestions))
        QFile::remove(file);
    QDir().rmdir(m_suggestionDirectory);  // unless another rating has put something there
    m_suggestions.clear();
}

void LogUpload::prepareLogs(const QString& bottleName) {
    prepare(bottleName, [bottleName](const QString& bottlePath, const QString& directory) {
        if (bottlePath.isEmpty())
            qWarning().noquote() << "bottlePath for " + bottleName + "is empty, nonthing to upload";
        else
            LogCollection::gather(LogCollection::Sources::of(bottlePath), directory);
        return QStringList();
    });
}

void LogUpload::prepareConfiguration(const QString& bottleName) {
    m_isRating = true;
    prepare(bottleName, [bottleName, suggestions = m_suggestionDirectory](const QString& bottlePath,
                                                                          const QString& directory) {
        return LogCollection::gatherForRating(bottleName, bottlePath, suggestions, directory);
    });
}

void LogUpload::prepare(const QString& bottleName, const Gather& gather) {
    BottlesConfig::instance()->watchBottle(bottleName, this, [this, gather](const BusResult& result) {
        m_copies = std::make_shared<QTemporaryDir>(UploadPlace::newLogs());
        if (!m_copies->isValid())
            qWarning().noquote() << "no directory for logs:" << m_copies->errorString();
        inBackground(
            this,
            [gather, path = BottleRecord::path(result.object()), copies = m_copies] {
                Gathered gathered;
                if (!copies->isValid())
                    return gathered;
                gathered.suggestions = gather(path, copies->path());
                const auto files = QDir(copies->path()).entryInfoList(QDir::Files, QDir::Name);
                for (const QFileInfo& file : files)
                    gathered.files += file.filePath();
                return gathered;
            },
            [this](const Gathered& gathered) {
                m_suggestions = gathered.suggestions;
                m_hasFiles = !gathered.files.isEmpty();
                Q_EMIT prepared(gathered.files);
            });
    });
}

void LogUpload::collectLogs(const QString& bottleName) {
    connect(this, &LogUpload::prepared, this, &LogUpload::upload);
    prepareLogs(bottleName);
}

void LogUpload::uploadConfiguration(const QString& bottleName) {
    connect(this, &LogUpload::prepared, this, &LogUpload::upload);
    prepareConfiguration(bottleName);
}

void LogUpload::upload() {
    if (!m_hasFiles) {
        if (m_isRating)
            qInfo("nonthing to up");
        finish({});
        return;
    }
    auto* uploads = UploadFilesManager::instance();
    if (m_isRating)
        qInfo().noquote() << "up: " + m_copies->path();
    m_upload = uploads->addTask({m_copies->path()}, UploadFilesTask::Logs);
    connect(uploads, &UploadFilesManager::sigUploadFinished, this,
            [this](UploadFilesTaskStatus status, const QString&, const QString& key, int replyCount) {
                if (replyCount == m_upload)
                    finish(status == UploadFilesTaskStatus::Success ? key : QString());
            });
}

void LogUpload::finish(const QString& fileKey) {
    qInfo().noquote() << "configLogKey:" << fileKey;
    if (m_isRating)
        qInfo("start apply score");
    if (m_upload > 0)
        removeSuggestions();
    m_upload = 0;
    m_copies.reset();
    Q_EMIT finished(fileKey);
}
