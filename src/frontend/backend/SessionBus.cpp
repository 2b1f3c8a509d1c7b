#include "backend/SessionBus.h"

#include <QCoreApplication>
#include <QDBusConnection>

bool SessionBus::isConnected() {
    return QDBusConnection::sessionBus().isConnected();
}

QString SessionBus::missingText() {
    return QCoreApplication::translate("SessionBus",
                                       "There is no session bus, over which Cellarix reaches its background "
                                       "service. Log out and in again, or start it with \"dbus-run-session "
                                       "cellarix\".");
}
