#include "launch/repair/RenewBottleStep.h"

#include <QDebug>
#include <QJsonObject>

#include "backend/BottleRepair.h"
#include "backend/ServiceErrorText.h"

RenewBottleStep::RenewBottleStep(const QString& bottle, QObject* parent)
    : RepairStep(parent), m_bottle(bottle) {}

void RenewBottleStep::start() {
    Q_EMIT emitMsg(tr("Renewing the files of Windows in the container"), MsgStatus);
    retry();
}

void RenewBottleStep::retry() {
    m_isRunning = true;
    BottleRepair::instance()->renew(m_bottle, this, [this](const BusResult& answer) { onAnswer(answer); });
}

void RenewBottleStep::cancel() {
    if (m_isRunning)
        BottleRepair::instance()->cancelRenewal(m_bottle);
    m_isRunning = false;
}

void RenewBottleStep::onAnswer(const BusResult& answer) {
    if (!m_isRunning)
        return;
    m_isRunning = false;
    const QJsonObject result = answer.object();
    const QStringList programs = result.value("busy").toVariant().toStringList();
    if (!programs.isEmpty()) {
        Q_EMIT blocked(programs);
        return;
    }
    if (!result.value("ok").toBool()) {
        const QString error = answer.ok ? ServiceErrorText::of(result) : answer.errorText();
        qWarning().noquote() << "bottle" << m_bottle << "was not renewed:" << error;
        Q_EMIT done(tr("The container could not be renewed: %1").arg(error));
        return;
    }
    Q_EMIT emitMsg(tr("Files of Windows renewed: %1").arg(result.value("mended").toInt()), MsgLine);
    Q_EMIT done({});
}
