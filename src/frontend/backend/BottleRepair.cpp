#include "backend/BottleRepair.h"

#include <QDBusConnection>
#include <QDebug>

#include "backend/PendingWork.h"

namespace {

constexpr int TimeoutMs = 3600000;  // as BottlesConfig: it may wait behind a long Wine operation
constexpr int LookTimeoutMs = 10000;

}  // namespace

BottleRepair::BottleRepair()
    : QDBusAbstractInterface("com.lumora.LumoraWineLauncher", "/com/lumora/Manager/BottleRepair",
                             "com.lumora.Manager.BottleRepair", QDBusConnection::sessionBus(), nullptr) {}

void BottleRepair::runnersFor32Bit(QObject* context, const BusCall::Handler& handler) {
    setTimeout(LookTimeoutMs);
    BusCall::watch(*this, "runnersFor32Bit", {}, context, handler);
}

void BottleRepair::damage(const QString& bottle, QObject* context, const BusCall::Handler& handler) {
    setTimeout(LookTimeoutMs);
    BusCall::watch(*this, "damage", {bottle}, context, handler);
}

void BottleRepair::renew(const QString& bottle, QObject* context, const BusCall::Handler& handler) {
    setTimeout(TimeoutMs);
    BusCall::watch(*this, "renewBottle", {bottle}, context, handler);
}

void BottleRepair::cancelRenewal(const QString& bottle) {
    setTimeout(TimeoutMs);
    const auto onAnswer = [bottle, hold = PendingWork::instance()->hold()](const BusResult& answer) {
        if (!answer.ok)
            qWarning().noquote() << "cannot cancel the repair of" << bottle << answer.errorMessage;
    };
    BusCall::watch(*this, "cancelRenewal", {bottle}, this, onAnswer, BusReply::Wanted::Ignored);
}
