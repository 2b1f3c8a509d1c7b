#include "backend/BottleCleanUp.h"

#include <QDBusConnection>

namespace {

constexpr int TimeoutMs = 3600000;  // as BottlesConfig: it may wait behind a long Wine operation

}  // namespace

BottleCleanUp::BottleCleanUp()
    : QDBusAbstractInterface("com.lumora.LumoraWineLauncher", "/com/lumora/Manager/CleanUp",
                             "com.lumora.Manager.CleanUp", QDBusConnection::sessionBus(), nullptr) {
    setTimeout(TimeoutMs);
}

void BottleCleanUp::deleteIfUnused(const QString& bottle, const QString& ignoredProgram, QObject* context,
                                   const BusCall::Handler& handler) {
    BusCall::watch(*this, "deleteIfUnused", {bottle, ignoredProgram}, context, handler);
}
