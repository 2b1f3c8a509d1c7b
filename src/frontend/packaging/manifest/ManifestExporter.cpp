#include "packaging/manifest/ManifestExporter.h"

#include <QDebug>

#include "backend/BottlesConfig.h"
#include "feedback/client/AliyunGreenApi.h"
#include "feedback/client/ModerationVerdict.h"

namespace {
constexpr int LongestCheckMs = 30000;
}

ManifestExporter::ManifestExporter(AliyunGreenApi* moderation, QObject* parent)
    : QObject(parent), m_moderation(moderation) {
    m_moderation->setParent(this);
    m_checkTimer.setSingleShot(true);
    m_checkTimer.setInterval(LongestCheckMs);
    connect(&m_checkTimer, &QTimer::timeout, this, [this] {
        m_moderation->abort();  // its answer would be taken for that of the next check
        onModerationFailed(QStringLiteral("no answer of the text moderation"));
    });
    connect(m_moderation, &AliyunGreenApi::replyOccurred, this, &ManifestExporter::onModerated);
    connect(m_moderation, &AliyunGreenApi::errorOccurred, this, &ManifestExporter::onModerationFailed);
}

void ManifestExporter::start(const ManifestForm& form) {
    if (m_step != Step::Idle)
        return;
    m_form = form;
    setStep(Step::Checking);
    m_checkTimer.start();
    m_moderation->checkContent(m_form.textForModeration());
}

void ManifestExporter::setStep(Step step) {
    m_step = step;
    Q_EMIT stepChanged();
}

void ManifestExporter::onModerated(const QString& reply) {
    m_checkTimer.stop();
    if (!ModerationVerdict::isRefused(reply)) {
        write();
        return;
    }
    setStep(Step::Idle);
    Q_EMIT refused();
}

void ManifestExporter::onModerationFailed(const QString& error) {
    m_checkTimer.stop();
    qWarning().noquote() << "err:" << error;
    write();
}

void ManifestExporter::write() {
    setStep(Step::Writing);
    BottlesConfig::instance()->dumpManifest(m_form.toServiceText(), this,
                                            [this](const BusResult& result) { onWritten(result); });
}

void ManifestExporter::onWritten(const BusResult& result) {
    setStep(Step::Idle);
    if (result.ok && !result.text.isEmpty()) {
        Q_EMIT exported(result.text);
        return;
    }
    if (result.ok)
        qWarning() << "Failed to dump manifest";
    else
        qWarning().noquote() << "Failed to dump manifest: " + result.errorMessage;
    Q_EMIT failed(result.ok ? QString() : result.errorText());
}
