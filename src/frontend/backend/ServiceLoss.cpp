#include "backend/ServiceLoss.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>

#include "backend/ServiceNames.h"

void whenServiceIsLost(QObject* context, const std::function<void()>& handler) {
    auto* watcher = new QDBusServiceWatcher(ServiceNames::Service, QDBusConnection::sessionBus(),
                                            QDBusServiceWatcher::WatchForOwnerChange, context);
    QObject::connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, context,
                     [handler](const QString&, const QString& before, const QString&) {
                         if (!before.isEmpty())
                             handler();
                     });
}
