#include "core/CellarixService.h"

#include <QDBusConnection>

#include "core/CellarixApplication.h"

Q_LOGGING_CATEGORY(serviceLog, "service")

namespace {
const char ServiceName[] = "com.lumora.Cellarix";
const char ObjectPath[] = "/com/lumora/Cellarix";
}  // namespace

CellarixService::CellarixService(CellarixApplication* application)
    : QDBusAbstractAdaptor(application), m_application(application) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.registerService(ServiceName)) {
        qCWarning(serviceLog) << "Failed to register DBus service";
        return;
    }
    // Adaptors only: the slots of the application object are not for others.
    if (!bus.registerObject(ObjectPath, application, QDBusConnection::ExportAdaptors))
        qCWarning(serviceLog) << "Failed to register DBus object";
}

CellarixService::~CellarixService() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.unregisterObject(ObjectPath);
    // The rest of the shutdown may take seconds, and the next process needs the name.
    bus.unregisterService(ServiceName);
}

QString CellarixService::clientVersion() const {
    return QCoreApplication::applicationVersion();
}

void CellarixService::showMainWindow() {
    m_application->requestMainWindow();
}
