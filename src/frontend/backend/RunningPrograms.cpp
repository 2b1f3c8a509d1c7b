#include "backend/RunningPrograms.h"

#include <QDBusConnection>

RunningPrograms::RunningPrograms()
    : QDBusAbstractInterface("com.lumora.LumoraWineLauncher", "/com/lumora/Manager/Programs",
                             "com.lumora.Manager.Programs", QDBusConnection::sessionBus(), nullptr) {}

void RunningPrograms::watchRunning(QObject* context, const BusCall::Handler& handler) {
    BusCall::watch(*this, "running", {}, context, handler);
}
