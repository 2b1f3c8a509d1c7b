#include "backend/BottleRepairs.h"

#include <QDBusConnection>

namespace {

constexpr int TimeoutMs =
    3600000;  // as BottlesConfig: copying a large installer takes minutes on a slow disk

}  // namespace

BottleRepairs::BottleRepairs()
    : QDBusAbstractInterface("com.lumora.LumoraWineLauncher", "/com/lumora/Manager/Repairs",
                             "com.lumora.Manager.Repairs", QDBusConnection::sessionBus(), nullptr) {
    setTimeout(TimeoutMs);
}

void BottleRepairs::describeDependencies(const QString& bottle, const QStringList& names, QObject* context,
                                         const BusCall::Handler& handler) {
    BusCall::watch(*this, "describe", {bottle, QString("dependency"), names}, context, handler);
}

void BottleRepairs::describeRunner(const QString& bottle, const QString& name, QObject* context,
                                   const BusCall::Handler& handler) {
    BusCall::watch(*this, "describe", {bottle, QString("runner"), QStringList{name}}, context, handler);
}

void BottleRepairs::takeFile(const QString& bottle, const QString& dependency, const QString& path,
                             QObject* context, const BusCall::Handler& handler) {
    BusCall::watch(*this, "takeFile", {bottle, dependency, path}, context, handler);
}
