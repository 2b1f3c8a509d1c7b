#include "feedback/client/UploadFilesManager.h"

#include <QCoreApplication>
#include <QDebug>
#include <QThread>

#include "feedback/client/SuggestionFile.h"
#include "feedback/client/UploadPlace.h"

namespace {
constexpr int LongestEndMs = 3000;
}

UploadFilesManager::UploadFilesManager()
    : m_imagePool(std::make_unique<QThreadPool>()), m_logPool(std::make_unique<QThreadPool>()) {
    qRegisterMetaType<UploadFilesTaskStatus>("UploadFilesTaskStatus");
    m_imagePool->setExpiryTimeout(-1);
    m_imagePool->setMaxThreadCount(qMax(1, QThread::idealThreadCount() - 1));
    m_logPool->setExpiryTimeout(-1);
    m_logPool->setMaxThreadCount(1);
    m_logPool->start([] {
        UploadPlace::removeLeftOvers();
        SuggestionFile::removeLeftOvers(SuggestionFile::CommonDirectory);
    });
    connect(qApp, &QCoreApplication::aboutToQuit, this, &UploadFilesManager::endAll);
}

UploadFilesManager::~UploadFilesManager() {
    if (endAll()) {
        qDeleteAll(m_tasks);
        return;
    }
    // A pool would wait without limit, and its threads use the tasks: both end with the process.
    m_imagePool.release();
    m_logPool.release();
}

/// Both pools, at the quit and in the destructor together, have one time.
bool UploadFilesManager::endAll() {
    cancelAll();
    if (!m_end)
        m_end = QDeadlineTimer(LongestEndMs);
    bool haveEnded = true;
    for (QThreadPool* pool : {m_imagePool.get(), m_logPool.get()})
        haveEnded = pool->waitForDone(int(m_end->remainingTime())) && haveEnded;
    if (!haveEnded)
        qWarning() << "uploads do not end within" << LongestEndMs << "ms:" << pathsUnderWay();
    return haveEnded;
}

int UploadFilesManager::addTask(const QStringList& filePaths, int fileType) {
    auto* task = new UploadFilesTask(filePaths, fileType, ReportAccess::current(), ++m_replyCount);
    m_tasks += task;
    connect(task, &UploadFilesTask::sigUploadProgress, this, &UploadFilesManager::sigUploadProgress);
    connect(task, &UploadFilesTask::sigUploadFinished, this,
            [this, task](UploadFilesTaskStatus status, const QString& path, const QString& key, int count) {
                onFinished(task);
                Q_EMIT sigUploadFinished(status, path, key, count);
            });
    connect(this, &UploadFilesManager::sigCancelUpload, task, &UploadFilesTask::onCancelUpload);
    (fileType == UploadFilesTask::Image ? m_imagePool : m_logPool)->start(task);
    return m_replyCount;
}

void UploadFilesManager::onFinished(UploadFilesTask* task) {
    m_tasks.removeOne(task);
    task->deleteLater();
}

void UploadFilesManager::endIfQueued(UploadFilesTask* task) {
    if (m_imagePool->tryTake(task) || m_logPool->tryTake(task))
        task->endUnstarted();
}

void UploadFilesManager::cancel(int replyCount) {
    for (UploadFilesTask* task : qAsConst(m_tasks)) {
        if (task->replyCount() != replyCount)
            continue;
        endIfQueued(task);
        task->onCancelUpload();
    }
}

void UploadFilesManager::cancelAll() {
    for (UploadFilesTask* task : qAsConst(m_tasks))
        endIfQueued(task);
    Q_EMIT sigCancelUpload();
}

QStringList UploadFilesManager::pathsUnderWay() const {
    QStringList paths;
    for (const UploadFilesTask* task : m_tasks)
        paths += task->firstPath();
    return paths;
}
