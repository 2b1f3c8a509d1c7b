#pragma once

#include <QObject>
#include <QTimer>

#include "packaging/manifest/ManifestForm.h"

class AliyunGreenApi;
struct BusResult;

/// One export at a time: the text goes through moderation, then the bottle service writes the manifest. Each
/// start() ends in exactly one of refused(), failed() and exported(), or in none when this object is deleted
/// first. Moderation that fails, or takes longer than 30 s, does not stop the export. GUI thread.
class ManifestExporter : public QObject {
    Q_OBJECT
public:
    enum class Step { Idle, Checking, Writing };

    /// Takes over the moderation client.
    explicit ManifestExporter(AliyunGreenApi* moderation, QObject* parent = nullptr);

    void start(const ManifestForm& form);
    Step step() const { return m_step; }

    /// Instead of 30 s.
    void setLongestCheckMs(int ms) { m_checkTimer.setInterval(ms); }

Q_SIGNALS:
    void stepChanged();
    void refused();
    /// The text is the service's reason in the user's language; empty when it gave none.
    void failed(const QString& errorText);
    /// The manifest's file.
    void exported(const QString& path);

private:
    void setStep(Step step);
    void onModerated(const QString& reply);
    void onModerationFailed(const QString& error);
    void write();
    void onWritten(const BusResult& result);

    AliyunGreenApi* m_moderation;
    ManifestForm m_form;
    QTimer m_checkTimer;
    Step m_step = Step::Idle;
};
