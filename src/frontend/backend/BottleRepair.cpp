#include "backend/BottleRepair.h"

#include <QDBusConnection>
#include <QDebug>

#include "backend/PendingWork.h"

namespace {

constexpr int WorkTimeoutMs = 3600000;  // as BottlesConfig: it may wait behind a long Wine operation
constexpr int LookTimeoutMs = 10000;

}  // namespace

BottleRepair::BottleRepair()
    : QDBusAbstractInterface("com.lumora.LumoraWineLauncher", "/com/lumora/Manager/Repair",
                             "com.lumora.Manager.Repair", QDBusConnection::sessionBus(), nullptr) {}

void BottleRepair::call(const char* method, int timeoutMs, const QVariantList& arguments, QObject* context,
                        const BusCall::Handler& handler) {
    setTimeout(timeoutMs);
    BusCall::watch(*this, method, arguments, context, handler);
}

void BottleRepair::describeDependencies(const QString& bottle, const QStringList& names, QObject* context,
                                        const BusCall::Handler& handler) {
    call("describe", LookTimeoutMs, {bottle, QString("dependency"), names}, context, handler);
}

void BottleRepair::describeRunner(const QString& bottle, const QString& name, QObject* context,
                                  const BusCall::Handler& handler) {
    call("describe", LookTimeoutMs, {bottle, QString("runner"), QStringList{name}}, context, handler);
}

void BottleRepair::takeFile(const QString& bottle, const QString& dependency, const QString& path,
                            QObject* context, const BusCall::Handler& handler) {
    call("takeFile", WorkTimeoutMs, {bottle, dependency, path}, context, handler);
}

void BottleRepair::runnersFor32Bit(QObject* context, const BusCall::Handler& handler) {
    call("runnersFor32Bit", LookTimeoutMs, {}, context, handler);
}

void BottleRepair::damage(const QString& bottle, QObject* context, const BusCall::Handler& handler) {
    call("damage", LookTimeoutMs, {bottle}, context, handler);
}

void BottleRepair::renew(const QString& bottle, QObject* context, const BusCall::Handler& handler) {
    call("renewBottle", WorkTimeoutMs, {bottle}, context, handler);
}

void BottleRepair::cancelRenewal(const QString& bottle) {
    setTimeout(WorkTimeoutMs);
    const auto onAnswer = [bottle, hold = PendingWork::instance()->hold()](const BusResult& answer) {
        if (!answer.ok)
            qWarning().noquote() << "cannot cancel the repair of" << bottle << answer.errorMessage;
    };
    BusCall::watch(*this, "cancelRenewal", {bottle}, this, onAnswer, BusReply::Wanted::Ignored);
}
