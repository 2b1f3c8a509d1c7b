#include "backend/ServiceLoss.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>

void whenServiceIsLost(QObject* context, const std::function<void()>& handler) {
    auto* watcher = new QDBusServiceWatcher("com.lumora.LumoraWineLauncher", QDBusConnection::sessionBus(),
                                            QDBusServiceWatcher::WatchForOwnerChange, context);
    QObject::connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, context,
                     [handler](const QString&, const QString& before, const QString&) {
                         if (!before.isEmpty())
                             handler();
                     });
}
