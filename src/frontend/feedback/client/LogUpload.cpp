#include "feedback/client/LogUpload.h"

#include <QDebug>
#include <QDir>
#include <QTemporaryDir>

#include "backend/BottleRecord.h"
#include "backend/InBackground.h"
#include "feedback/client/BottleQuery.h"
#include "feedback/client/LogCollection.h"
#include "feedback/client/SuggestionFile.h"
#include "feedback/client/UploadFilesManager.h"
#include "feedback/client/UploadPlace.h"

const char LogUpload::SuggestionDirectory[] = "/tmp/.suggestion_file_path";

namespace {

/// What was copied, and the files of the suggestion directory that are part of it.
struct Gathered {
    LogUpload::Copies copies;
    QStringList suggestions;
};

/// `fill(bottlePath, directory, suggestions)` runs in the background. Without any copy the handler gets null.
template <class Fill, class Handler>
void copyFiles(const QString& bottleName, QObject* context, Fill fill, Handler handler) {
    BottleQuery::ask(bottleName, context, [context, fill, handler](const BusResult& result) {
        const auto work = [fill, path = BottleRecord::path(result.object())] {
            Gathered gathered;
            const auto copies = UploadPlace::make(UploadPlace::newLogs());
            if (!copies->isValid())
                qWarning().noquote() << "no directory for logs:" << copies->errorString();
            else
                fill(path, copies->path(), &gathered.suggestions);
            if (copies->isValid() && !QDir(copies->path()).isEmpty())
                gathered.copies = copies;
            return gathered;
        };
        inBackground(context, work, handler);
    });
}

void fillWithLogs(const QString& bottleName, const QString& bottlePath, const QString& directory) {
    if (bottlePath.isEmpty())
        qWarning().noquote() << "bottlePath for " + bottleName + "is empty, nonthing to upload";
    else
        LogCollection::gather(LogCollection::Sources::of(bottlePath), directory);
}

template <class Handler>
void copyForRating(const QString& bottleName, const QString& suggestionDirectory, QObject* context,
                   Handler handler) {
    copyFiles(
        bottleName, context,
        [bottleName, suggestionDirectory](const QString& bottlePath, const QString& directory,
                                          QStringList* suggestions) {
            *suggestions =
                LogCollection::gatherForRating(bottleName, bottlePath, suggestionDirectory, directory);
        },
        handler);
}

}  // namespace

LogUpload::~LogUpload() {
    if (m_upload > 0)
        UploadFilesManager::instance()->cancel(m_upload);
    removeSuggestions();
}

void LogUpload::removeSuggestions() {
    if (m_suggestions.isEmpty() || !SuggestionFile::isPrivate(m_suggestionDirectory))
        return;
    for (const QString& file : qAsConst(m_suggestions))
        QFile::remove(file);
    QDir().rmdir(m_suggestionDirectory);  // unless another rating has put something there
    m_suggestions.clear();
}

void LogUpload::copyLogs(const QString& bottleName, QObject* context, const CopiesHandler& handler) {
    copyFiles(
        bottleName, context,
        [bottleName](const QString& bottlePath, const QString& directory, QStringList*) {
            fillWithLogs(bottleName, bottlePath, directory);
        },
        [handler](const Gathered& gathered) { handler(gathered.copies); });
}

void LogUpload::copyConfiguration(const QString& bottleName, const QString& suggestionDirectory,
                                  QObject* context, const CopiesHandler& handler) {
    copyForRating(bottleName, suggestionDirectory, context,
                  [handler](const Gathered& gathered) { handler(gathered.copies); });
}

void LogUpload::collectLogs(const QString& bottleName) {
    copyLogs(bottleName, this, [this](const Copies& copies) { uploadLogs(copies); });
}

void LogUpload::uploadConfiguration(const QString& bottleName) {
    copyForRating(bottleName, m_suggestionDirectory, this, [this](const Gathered& gathered) {
        m_suggestions = gathered.suggestions;
        if (gathered.copies)
            qInfo().noquote() << "up: " + gathered.copies->path();
        else
            qInfo("nonthing to up");
        uploadLogs(gathered.copies);
    });
}

void LogUpload::uploadLogs(const Copies& copies) {
    if (!copies) {
        finish({});
        return;
    }
    m_copies = copies;
    auto* uploads = UploadFilesManager::instance();
    m_upload = uploads->addTask({copies->path()}, UploadFilesTask::Logs);
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
    removeSuggestions();
    Q_EMIT finished(fileKey);
}
