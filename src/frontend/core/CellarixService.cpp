#include "core/CellarixService.h"

#include <QDBusConnection>
#include <QDialog>
#include <QTimer>
#include <algorithm>

#include "backend/DesktopUtils.h"
#include "core/CellarixApplication.h"
#include "programs/AppItemWidgetStateManager.h"
#include "store/install/YamlProgramInstallerSession.h"

Q_LOGGING_CATEGORY(serviceLog, "service")

namespace {
const char ServiceName[] = "com.lumora.Cellarix";
const char ObjectPath[] = "/com/lumora/Cellarix";
constexpr int SessionDelayMs = 100;
const char* const BusyWindows[] = {"BottlesConfigView", "EnvInitBanner", "YamlProgramInstallerBanner"};

bool isBusy(const QWidget* window) {
    if (!window->isVisible())
        return false;
    if (qobject_cast<const QDialog*>(window) && window->isModal())
        return true;
    return std::any_of(std::begin(BusyWindows), std::end(BusyWindows),
                       [window](const char* name) { return window->inherits(name); });
}

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

void CellarixService::installProgram(const QString& appId, const QString& appInfoId) {
    if (isWindowBusy()) {
        notifyBusy();
        return;
    }
    qCInfo(serviceLog) << "Installing program:" << appId << "with appInfo:" << appInfoId;
    QTimer::singleShot(SessionDelayMs, this, [this, appId, appInfoId] { startSession(appId, appInfoId); });
}

void CellarixService::startSession(const QString& appId, const QString& appInfoId) {
    if (isInstalling()) {  // of a call that came as soon
        notifyBusy();
        return;
    }
    m_installer = new YamlProgramInstallerSession(appId, appInfoId, this);
    connect(m_installer, &YamlProgramInstallerSession::signalError, this, [this](const QString& text) {
        DesktopUtils::notify(m_application->productName(), DesktopUtils::notificationText(text));
    });
    connect(m_installer, &YamlProgramInstallerSession::signalDone, this, &CellarixService::onSessionDone);
    m_installer->start();
}

void CellarixService::onSessionDone() {
    m_installer->deleteLater();
    m_installer = nullptr;
    m_application->leaveAfterSetUp();
}

/// From here or from a page of the store.
bool CellarixService::isInstalling() const {
    return m_installer || AppItemWidgetStateManager::instance()->isSettingUp();
}

bool CellarixService::isWindowBusy() const {
    const QWidgetList windows = QApplication::topLevelWidgets();
    return isInstalling() || std::any_of(windows.begin(), windows.end(), isBusy);
}

void CellarixService::notifyBusy() const {
    DesktopUtils::notify(m_application->productName(),
                         tr("A window session is currently in progress; unable to open a new session window. "
                            "Please close the current session and try again!"));
}
