#pragma once

#include <QJsonObject>
#include <QObject>
#include <memory>

#include "feedback/dialogs/FeedbackForm.h"

class ReportFacts;

/// Sends one report: waits for the facts, uploads the logs and submits. Ends in exactly one finished() for
/// each submit(), unless it is cancelled or deleted, which also ends the upload and the request. GUI thread.
class FeedbackSubmission : public QObject {
    Q_OBJECT
public:
    enum class Step { Idle, Collecting, UploadingLogs, Sending };

    /// The facts must outlive this object.
    explicit FeedbackSubmission(ReportFacts* facts, QObject* parent = nullptr);
    ~FeedbackSubmission() override;

    void submit(const FeedbackForm& form, const QStringList& imageKeys, bool withLogs);
    void cancel();
    Step step() const { return m_step; }

Q_SIGNALS:
    void stepChanged();
    /// Of the archive of logs, from 0 to 100.
    void uploadProgress(int percent);
    /// `desc` says why not; untrusted; may be empty. `isWhole` is false when the logs could not be collected
    /// or uploaded; the report goes without them.
    void finished(bool ok, const QString& desc, bool isWhole);

private:
    void setStep(Step step);
    void onFacts();
    void send(const QString& logFileKey);

    ReportFacts* m_facts;
    FeedbackForm m_form;
    QStringList m_imageKeys;
    bool m_withLogs = true;
    bool m_isWhole = true;
    Step m_step = Step::Idle;
    std::unique_ptr<QObject> m_work;  ///< owns what is under way
};
