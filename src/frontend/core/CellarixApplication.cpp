#include "core/CellarixApplication.h"

#include <QDebug>
#include <QLocale>
#include <QProcess>
#include <QTimer>

#include "backend/BottlesConfig.h"
#include "backend/DesktopUtils.h"
#include "backend/PendingWork.h"
#include "backend/ServiceThreads.h"
#include "core/ApplicationWindows.h"
#include "core/BackendVersion.h"
#include "core/CommandLineHandler.h"
#include "core/ImageCache.h"
#include "core/ServiceAgreement.h"
#include "core/WindowMonitor.h"
#include "core/base/BuildInfo.h"
#include "core/base/Paths.h"
#include "environment/BottleEnvScript.h"
#include "fenk/style/Theme.h"
#include "fenk/window/Dialog.h"
#include "launch/LaunchWindows.h"
#include "launch/bottle/PrivateBottleName.h"
#include "launch/run/ExeFileRunner.h"
#include "programs/AppItemWidgetStateManager.h"
#include "shell/Mainwindow.h"
#include "shell/library/AppLocalView.h"

namespace {
constexpr int ImageCacheDays = 15;
constexpr int LongestLeavingMs = 120000;
const char Ruler[] = "---------------------------------";
}  // namespace

CellarixApplication::CellarixApplication(int& argc, char** argv)
    : Fenk::Application(argc, argv),
      m_translator(new QTranslator(this)),
      m_windowMonitor(new WindowMonitor(this)),
      m_leavingLimit(new QTimer(this)) {
    installEventFilter(m_windowMonitor);
    LaunchWindows::instance().repair = [this](const ProgramRef& program, const QStringList& components) {
        repairProgram(program.bottle, program.uuid, components);
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
            [this](const QString&, const QString& sentence) {
                if (!m_mainWindow || !m_mainWindow->isVisible())
                    DesktopUtils::notify(productName(), DesktopUtils::notificationText(sentence));
            });
    connect(PendingWork::instance(), &PendingWork::done, this, &CellarixApplication::onWorkEnded,
            Qt::QueuedConnection);
    connect(m_windowMonitor, &WindowMonitor::shown, this, &CellarixApplication::endLeaving);
    m_leavingLimit->setSingleShot(true);
    m_leavingLimit->setInterval(LongestLeavingMs);
    connect(m_leavingLimit, &QTimer::timeout, this, &CellarixApplication::onLeavingLimit);
}

CellarixApplication::~CellarixApplication() {
    if (envInitScript().running)
        qInfo() << "leaving while the environment is being set up, which goes on by itself";
    qDeleteAll(m_runners);
    m_runners.clear();
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
    endLeaving();
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
        this, [this] { leaveIfPossible(LeaveRule::Ended::Start); }, Qt::QueuedConnection);
    return result;
}

void CellarixApplication::admitOtherStarts() {
    m_othersHaveToWait = false;
    if (!m_waitingStarts.isEmpty())
        QMetaObject::invokeMethod(this, &CellarixApplication::handleWaitingStarts, Qt::QueuedConnection);
}

/// One at a time, since it may run an event loop in which the next is to come; its end calls again.
void CellarixApplication::handleWaitingStarts() {
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
    // A batch file given to the command line is a document.
    if (path.endsWith(QLatin1String(".bat"), Qt::CaseInsensitive))
        openExe(path, false);
    else
        handleCommandLine({applicationFilePath(), path});
    m_refusals.setWindow(nullptr);
}

void CellarixApplication::openExe(const QString& path, bool debug) {
    // Without that window a launch tells in its banner that there is no bus.
    if (m_refusals.refusesFile(path) || (debug && m_refusals.refusesWithoutBus()))
        return;
    // The key takes the time to read the file.
    if (const ExeFileRunner* running =
            m_runners.isEmpty() ? nullptr : m_runners.value(privateBottleNameOf(path))) {
        showAlreadyRunning(running->displayName());
        return;
    }
    const QPointer<ExeFileRunner> runner(new ExeFileRunner(path, this));
    // Of the files that share a public bottle one at a time.
    const auto isFree = [this](const QString& bottle) {
        if (const ExeFileRunner* running = m_runners.value(bottle))
            showAlreadyRunning(running->displayName());
        return !m_runners.contains(bottle);
    };
    if ((debug ? runner->runInBottlesConfigWindow() : runner->run(isFree)) == 0) {
        addExeRunner(runner);
        return;
    }
    if (!runner)
        return;
    if (debug && !runner->id().isEmpty() && !LaunchWindows::instance().configuration)
        ApplicationWindows::tellNoConfiguration(runner->id());
    runner->deleteLater();
}

int CellarixApplication::openProgram(const QString& bottleName, const QString& programUuid) {
    if (ExeFileRunner* running = m_runners.value(bottleName)) {
        showAlreadyRunning(running->displayName());
        return 0;
    }
    if (m_refusals.refusesStoredProgram())
        return 1;
    auto* runner = new ExeFileRunner(bottleName, programUuid, this);
    const int result = runner->runProgram();
    if (result == 0)
        addExeRunner(runner);
    else
        runner->deleteLater();
    return result;
}

int CellarixApplication::repairProgram(const QString& bottleName, const QString& programUuid,
                                       const QStringList& components) {
    if (components.isEmpty() || m_runners.contains(bottleName))
        return openProgram(bottleName, programUuid);
    if (m_refusals.refusesStoredProgram())
        return 1;
    auto* runner = new ExeFileRunner(bottleName, programUuid, this);
    addExeRunner(runner);
    const int result = runner->fixup(bottleName, programUuid, components);
    if (result != 0)
        runner->deleteLater();
    return result;
}

void CellarixApplication::showAlreadyRunning(const QString& displayName) {
    QPointer<Fenk::Dialog>& dialog = m_runningDialogs[displayName];
    if (!dialog) {
        dialog = new Fenk::Dialog;
        dialog->setObjectName("already_running_dialog");
        dialog->setWindowTitle(productName());
        dialog->setMessage(tr("%1 is running.").arg(displayName));
        dialog->addButton(tr("OK"));
    }
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
}

void CellarixApplication::addExeRunner(ExeFileRunner* runner) {
    const QString id = runner->id();
    if (id.isEmpty())
        qFatal("runner id is null");
    m_hasLaunched = true;
    m_runners.insert(id, runner);
    qInfo().noquote() << "add exe runner:" << id;
    connect(runner, &ExeFileRunner::emit_finished, this, &CellarixApplication::onRunnerFinished);
}

void CellarixApplication::onRunnerFinished() {
    auto* runner = qobject_cast<ExeFileRunner*>(sender());
    for (const QString& key : m_runners.keys()) {
        if (m_runners.value(key) == runner) {
            m_runners.remove(key);
            qInfo().noquote() << "remove exe runner:" << key;
        }
    }
    leaveIfPossible(LeaveRule::Ended::Launch);
}

LeaveRule::Facts CellarixApplication::leaveFacts() const {
    LeaveRule::Facts facts;
    facts.hasRunner = !m_runners.isEmpty();
    facts.isSettingUp = AppItemWidgetStateManager::instance()->isSettingUp();
    // What is found is logged.
    facts.hasVisibleWindow = !facts.hasRunner && !facts.isSettingUp && hasVisibleWindow();
    facts.isHandlingStart = m_startsHandled > 0;
    facts.hasWaitingStarts = !m_waitingStarts.isEmpty();
    facts.isService = m_commandLineHandler && m_commandLineHandler->isService();
    facts.isScriptRunning = envInitScript().running;
    facts.hasPendingWork = PendingWork::instance()->isPending();
    facts.isOverdue = m_leaving && !m_leavingLimit->isActive();
    return facts;
}

bool CellarixApplication::canQuit() const {
    return LeaveRule::of(LeaveRule::Ended::LastWindow, leaveFacts()) == LeaveRule::Verdict::Leave;
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
    return LeaveRule::of(LeaveRule::Ended::Start, leaveFacts()) != LeaveRule::Verdict::Leave;
}

bool CellarixApplication::hasOnlyRefused() const {
    const bool isService = m_commandLineHandler && m_commandLineHandler->isService();
    return m_refusals.hasRefused() && !m_hasLaunched && !m_mainWindow && !isService;
}

bool CellarixApplication::isUpdate() const {
    return m_commandLineHandler && m_commandLineHandler->isUpdate();
}

void CellarixApplication::leaveAfter(const BottleEnvScript& script) {
    if (script.running)
        connect(script.process, &QObject::destroyed, this, &CellarixApplication::onWorkEnded,
                Qt::QueuedConnection);
}

void CellarixApplication::leaveIfPossible(LeaveRule::Ended what) {
    if (m_leaving == LeaveRule::Ended::User)
        what = LeaveRule::Ended::User;
    switch (LeaveRule::of(what, leaveFacts())) {
        case LeaveRule::Verdict::Stay:
            endLeaving();
            return;
        case LeaveRule::Verdict::LeaveLater:
            beginLeaving(what);
            return;
        case LeaveRule::Verdict::Leave:
            break;
    }
    qInfo() << (what == LeaveRule::Ended::Launch ? "all runners are finished, quit app"
                                                 : "nothing is left to wait for, quit app");
    QCoreApplication::quit();
}

void CellarixApplication::beginLeaving(LeaveRule::Ended what) {
    if (!m_leaving) {
        qInfo() << "quit as soon as the bottle service has done what was asked for";
        m_leavingLimit->start();
    }
    m_leaving = what;
}

void CellarixApplication::endLeaving() {
    m_leaving.reset();
    m_leavingLimit->stop();
}

void CellarixApplication::onWorkEnded() {
    leaveIfPossible(m_leaving.value_or(LeaveRule::Ended::Work));
}

void CellarixApplication::onLeavingLimit() {
    qWarning() << "the bottle service has not done in time what was asked for";
    onWorkEnded();
}

void CellarixApplication::onLastWindowClosed() {
    qInfo() << "lastWindowClosed, about to quit";
    if (!m_runners.isEmpty())
        qInfo().noquote() << "bottles is running" << m_runners.firstKey();
    if (AppItemWidgetStateManager::instance()->isSettingUp())
        qInfo() << "app is setuping";
    const LeaveRule::Verdict verdict = LeaveRule::of(LeaveRule::Ended::LastWindow, leaveFacts());
    QGuiApplication::setQuitOnLastWindowClosed(verdict == LeaveRule::Verdict::Leave);
    if (verdict == LeaveRule::Verdict::LeaveLater)
        beginLeaving(m_leaving.value_or(LeaveRule::Ended::LastWindow));
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
    ExeFileRunner* runner = m_runners.value(bottle);
    if (!runner)
        return;
    qInfo().noquote() << "quit runner " << bottle << " because of deleting bottle";
    runner->finish(false);
    m_runners.remove(bottle);
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
    leaveIfPossible(LeaveRule::Ended::User);
}
