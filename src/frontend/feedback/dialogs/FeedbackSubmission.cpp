#include "feedback/dialogs/FeedbackSubmission.h"

#include <QDebug>
#include <QTemporaryDir>

#include "feedback/client/FeedBackApi.h"
#include "feedback/client/LogUpload.h"
#include "feedback/client/UploadFilesManager.h"
#include "feedback/dialogs/ReportFacts.h"

FeedbackSubmission::FeedbackSubmission(ReportFacts* facts, QObject* parent)
    : QObject(parent), m_facts(facts) {}

FeedbackSubmission::~FeedbackSubmission() = default;

void FeedbackSubmission::submit(const FeedbackForm& form, const QStringList& imageKeys, bool withLogs) {
    if (m_step != Step::Idle)
        return;
    qInfo().noquote() << "imgsToUpload:" << imageKeys.join(", ");
    m_form = form;
    m_imageKeys = imageKeys;
    m_withLogs = withLogs;
    m_work = std::make_unique<QObject>();
    setStep(Step::Collecting);
    if (m_facts->isReady()) {
        onFacts();
        return;
    }
    connect(m_facts, &ReportFacts::ready, m_work.get(), [this] { onFacts(); });
    m_facts->collect();
}

void FeedbackSubmission::onFacts() {
    m_isWhole = !m_withLogs || !m_facts->lacksLogs();
    if (!m_withLogs || !m_facts->logs()) {
        send({});
        return;
    }
    setStep(Step::UploadingLogs);
    auto* logs = new LogUpload(m_work.get());
    connect(logs, &LogUpload::finished, m_work.get(), [this](const QString& key) {
        m_isWhole = !key.isEmpty();
        send(key);
    });
    connect(UploadFilesManager::instance(), &UploadFilesManager::sigUploadProgress, m_work.get(),
            [this](const QString& path, qint64 sent, qint64 total) {
                if (path == m_facts->logs()->path() && total > 0)
                    Q_EMIT uploadProgress(int(100 * sent / total));
            });
    logs->uploadLogs(m_facts->logs());
}

void FeedbackSubmission::send(const QString& logFileKey) {
    setStep(Step::Sending);
    auto* api = new FeedBackApi(m_work.get());
    api->submitFeedback(m_form.body(m_imageKeys, m_facts->hardware(), logFileKey), m_facts->versions(),
                        m_work.get(), [this](bool ok, const QString& desc) {
                            m_work.release()->deleteLater();  // this is called by a part of it
                            setStep(Step::Idle);
                            Q_EMIT finished(ok, desc, m_isWhole);
                        });
}

void FeedbackSubmission::cancel() {
    if (m_step == Step::Idle)
        return;
    qInfo("the report is cancelled");
    m_work.reset();
    setStep(Step::Idle);
}

void FeedbackSubmission::setStep(Step step) {
    m_step = step;
    Q_EMIT stepChanged();
}
