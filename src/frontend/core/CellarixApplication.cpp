#include "core/CellarixApplication.h"

#include <QDebug>
#include <QLocale>
#include <QProcess>

#include "backend/BottlesConfig.h"
#include "backend/DesktopUtils.h"
#include "backend/PendingWork.h"
#include "backend/ServiceThreads.h"
#include "core/ApplicationWindows.h"
#include "core/BackendVersion.h"
#include "core/CommandLineHandler.h"
#include "core/ImageCache.h"
#include "core/ProcessEnd.h"
#include "core/RunningLaunches.h"
#include "core/ServiceAgreement.h"
#include "core/WindowMonitor.h"
#include "core/base/BuildInfo.h"
#include "core/base/Paths.h"
#include "environment/BottleEnvScript.h"
#include "fenk/style/Theme.h"
#include "launch/LaunchWindows.h"
#include "programs/AppItemWidgetStateManager.h"
#include "shell/Mainwindow.h"
#include "shell/library/AppLocalView.h"

namespace {
constexpr int ImageCacheDays = 15;
const char Ruler[] = "---------------------------------";
}  // namespace

CellarixApplication::CellarixApplication(int& argc, char** argv)
    : Fenk::Application(argc, argv),
      m_launches(new RunningLaunches(this, &m_refusals)),
      m_translator(new QTranslator(this)),
      m_windowMonitor(new WindowMonitor(this)),
      m_end(new ProcessEnd([this] { return leaveFacts(); }, this)) {
    installEventFilter(m_windowMonitor);
    ApplicationWindows::setOpeners();
    LaunchWindows::instance().repair = [this](const ProgramRef& program, const QStringList& components) {
        // A start runs an event loop, in which the caller and its list may go.
        QMetaObject::invokeMethod(
            this, [this, program, components] { repairProgram(program.bottle, program.uuid, components); },
            Qt::QueuedConnection);
    };
    Fenk::Theme::addIconSearchPath(Paths::iconsDir());
    loadTranslators(QString::fromLocal8Bit(qgetenv("LANG")));
    connect(this, &Fenk::Application::newProcessInstance, this, &CellarixApplication::handleNewInstance);
    connect(this, &QGuiApplication::lastWindowClosed, this, &CellarixApplication::onLastWindowClosed);

    BottlesConfig* config = BottlesConfig::instance();
    connect(config, &BottlesConfig::program_deleted, this, &CellarixApplication::onProgramDeleted);
    connect(config, &BottlesConfig::program_added, this, &CellarixApplication::onProgramAdded);
    connect(config, &BottlesConfig::program_updated, this, &CellarixApplication::onProgramUpdated);
    connect(config, &BottlesConfig::bottles_deleted, this, &CellarixApplication::onBottleDeleted);
    connect(AppItemWidgetStateManager::instance(), &AppItemWidgetStateManager::failed, this,
            [this](const QString&, const QString& errorText) {
                if (!m_mainWindow || !m_mainWindow->isVisible())
                    DesktopUtils::notify(productName(), DesktopUtils::notificationText(errorText));
            });
    connect(AppItemWidgetStateManager::instance(), &AppItemWidgetStateManager::setupDone, this,
            &CellarixApplication::leaveAfterSetUp);
    connect(m_windowMonitor, &WindowMonitor::shown, m_end, &ProcessEnd::stay);
    connect(m_launches, &RunningLaunches::ended, m_end,
            [this] { m_end->leaveIfPossible(LeaveRule::Ended::Launch); });
}

CellarixApplication::~CellarixApplication() {
    if (envInitScript().running)
        qInfo() << "leaving while the environment is being set up, which goes on by itself";
    m_launches->clear();
    delete m_mainWindow;
    abandonBackendVersion();
    ServiceThreads::waitForDone();
    LaunchWindows::instance() = {};
    purgeImageCache(ImageCacheDays);
}

void CellarixApplication::loadTranslators(const QString& lang) {
    setTranslationsDir(Paths::translationsDir());
    if (BuildInfo::isRelease()) {
        loadTranslator({QLocale::system()});
        return;
    }
    qDebug() << "lang " << lang;
    const QLocale locale = lang.isEmpty() ? QLocale() : QLocale(lang);
    if (m_translator->load(locale, "cellarix", "_", Paths::translationsDir(), "")) {
        qInfo() << m_translator->filePath();
        installTranslator(m_translator);
    }
}

int CellarixApplication::handleCommandLine(const QStringList& args) {
    m_end->stay();
    // A dialog of one start runs the event loop, in which the next one must not overtake the answer.
    if (m_othersHaveToWait) {
        if (!CommandLineHandler::refuseForNow(args))
            m_waitingStarts << args;
        return 0;
    }
    if (!m_commandLineHandler)
        m_commandLineHandler = new CommandLineHandler(this);
    m_othersHaveToWait = true;
    ++m_startsHandled;
    const int result = m_commandLineHandler->handleCommandLine(args);
    --m_startsHandled;
    admitOtherStarts();
    QMetaObject::invokeMethod(
        m_end, [this] { m_end->leaveIfPossible(LeaveRule::Ended::Start); }, Qt::QueuedConnection);
    return result;
}

void CellarixApplication::admitOtherStarts() {
    m_othersHaveToWait = false;
    if (!m_waitingStarts.isEmpty())
        QMetaObject::invokeMethod(this, &CellarixApplication::handleWaitingStart, Qt::QueuedConnection);
}

/// Handles one start, whose end calls this again: a start may run an event loop, in which the next one must
/// not begin.
void CellarixApplication::handleWaitingStart() {
    if (!m_othersHaveToWait && !m_waitingStarts.isEmpty())
        handleCommandLine(m_waitingStarts.takeFirst());
}

void CellarixApplication::handleNewInstance(qint64 pid, const QStringList& arguments) {
    Q_UNUSED(pid)
    qInfo() << "::::" << arguments;
    // An empty list would mean this process's own.
    if (!arguments.isEmpty())
        handleCommandLine(arguments);
}

void CellarixApplication::showMainWindow() {
    if (!m_mainWindow) {
        m_mainWindow = new Mainwindow;
        // Queued: a drop is over for its source only when its event has been handled.
        connect(m_mainWindow, &Mainwindow::openRequested, this, &CellarixApplication::openChosenFile,
                Qt::QueuedConnection);
    }
    m_mainWindow->show();
    m_mainWindow->activateWindow();
}

void CellarixApplication::requestMainWindow() {
    if (m_othersHaveToWait)
        m_waitingStarts << QStringList{applicationFilePath()};
    else
        showMainWindow();
}

/// As if it were handed over by another start, so that the two never run into each other.
void CellarixApplication::openChosenFile(const QString& path) {
    m_refusals.setWindow(m_mainWindow);
    if (path.endsWith(QLatin1String(".bat"), Qt::CaseInsensitive))
        m_chosenBatchFiles << path;
    handleCommandLine({applicationFilePath(), path});
    m_refusals.setWindow(nullptr);
}

void CellarixApplication::openExe(const QString& path, bool debug) {
    m_launches->openFile(path, debug);
}

int CellarixApplication::openProgram(const QString& bottleName, const QString& programUuid) {
    return m_launches->openProgram(bottleName, programUuid);
}

int CellarixApplication::repairProgram(const QString& bottleName, const QString& programUuid,
                                       const QStringList& components) {
    return m_launches->repairProgram(bottleName, programUuid, components);
}

void CellarixApplication::addExeRunner(ExeFileRunner* runner) {
    m_launches->add(runner);
}

bool CellarixApplication::isProgramRunning(const QString& bottleName) const {
    return m_launches->contains(bottleName);
}

LeaveRule::Facts CellarixApplication::leaveFacts() const {
    LeaveRule::Facts facts;
    facts.hasRunner = !m_launches->isEmpty();
    facts.isSettingUp = AppItemWidgetStateManager::instance()->isSettingUp();
    facts.hasVisibleWindow = !facts.hasRunner && !facts.isSettingUp && hasVisibleWindow();
    facts.isHandlingStart = m_startsHandled > 0;
    facts.hasWaitingStarts = !m_waitingStarts.isEmpty();
    facts.isService = m_commandLineHandler && m_commandLineHandler->isService();
    facts.isScriptRunning = envInitScript().running;
    facts.hasPendingWork = PendingWork::instance()->isPending();
    facts.hasTransfer = PendingWork::instance()->isTransferring();
    return facts;
}

bool CellarixApplication::canQuit() const {
    return m_end->verdict(LeaveRule::Ended::LastWindow) == LeaveRule::Verdict::Leave;
}

bool CellarixApplication::hasVisibleWindow() const {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->isWindow() && !widget->isHidden() && m_windowMonitor->contains(widget)) {
            WindowMonitor::logWindow(widget);
            return true;
        }
    }
    return false;
}

bool CellarixApplication::isNeeded() const {
    return m_end->verdict(LeaveRule::Ended::Start) != LeaveRule::Verdict::Leave;
}

bool CellarixApplication::hasOnlyRefused() const {
    const bool isService = m_commandLineHandler && m_commandLineHandler->isService();
    return m_refusals.hasRefused() && !m_launches->hasLaunched() && !m_mainWindow && !isService;
}

bool CellarixApplication::isUpdate() const {
    return m_commandLineHandler && m_commandLineHandler->isUpdate();
}

void CellarixApplication::leaveAfter(const BottleEnvScript& script) {
    if (script.running)
        connect(script.process, &QObject::destroyed, m_end, &ProcessEnd::onWorkEnded, Qt::QueuedConnection);
}

/// Queued: the set-up still counts while its end is told.
void CellarixApplication::leaveAfterSetUp() {
    QMetaObject::invokeMethod(
        m_end, [this] { m_end->leaveIfPossible(LeaveRule::Ended::SetUp); }, Qt::QueuedConnection);
}

void CellarixApplication::onLastWindowClosed() {
    qInfo() << "lastWindowClosed, about to quit";
    if (!m_launches->isEmpty())
        qInfo().noquote() << "bottles is running" << m_launches->firstBottle();
    if (AppItemWidgetStateManager::instance()->isSettingUp())
        qInfo() << "app is setuping";
    m_end->onLastWindowClosed();
}

AppLocalView* CellarixApplication::localView() const {
    return m_mainWindow ? m_mainWindow->findChild<AppLocalView*>() : nullptr;
}

void CellarixApplication::onProgramDeleted(const QString& bottle, const QString& uuid) {
    qDebug() << "program deleted" << Ruler << bottle << uuid;
    if (AppLocalView* view = localView())
        view->slotAppRemoved(bottle, uuid);
}

void CellarixApplication::onProgramAdded(const QString& bottle, const QString& uuid, const QString& object) {
    qDebug() << "program added" << Ruler << bottle << uuid << object;
    if (AppLocalView* view = localView())
        view->slotAppAdded(bottle, uuid, object);
}

void CellarixApplication::onProgramUpdated(const QString& bottle, const QString& uuid,
                                           const QString& object) {
    qDebug() << "program updated" << Ruler << bottle << uuid << object;
    if (AppLocalView* view = localView())
        view->slotAppUpdated(bottle, uuid, object);
}

void CellarixApplication::onBottleDeleted(const QString& bottle) {
    qDebug().noquote() << "bottles deleted: " << bottle;
    m_launches->endDeleted(bottle);
}

bool CellarixApplication::checkServiceAgreement() {
    return ServiceAgreement::check();
}

void CellarixApplication::checkBackendVersion() {
    ::checkBackendVersion();
}

void CellarixApplication::handleQuitAction() {
    if (!PendingWork::instance()->isPending()) {
        Fenk::Application::handleQuitAction();
        return;
    }
    if (m_mainWindow)
        m_mainWindow->hide();
    m_end->leaveIfPossible(LeaveRule::Ended::User);
}
