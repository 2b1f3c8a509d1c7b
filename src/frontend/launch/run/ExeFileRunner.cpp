#include "launch/run/ExeFileRunner.h"

#include <QDebug>
#include <QFileInfo>
#include <QIcon>
#include <QPointer>
#include <QtConcurrentRun>

#include "backend/BottleRecord.h"
#include "backend/BottlesConfig.h"
#include "backend/ProgramRecord.h"
#include "backend/SessionBus.h"
#include "launch/banner/WineExeLaunchBanner.h"
#include "launch/bottle/LaunchBottle.h"
#include "launch/icons/IconFile.h"
#include "launch/records/FailedStarts.h"
#include "launch/run/BottleTasks.h"
#include "launch/run/ConfigWindowSession.h"
#include "launch/run/ExeFileExecutor.h"
#include "launch/run/LaunchCleanUp.h"
#include "launch/run/LaunchView.h"
#include "launch/run/RepairAssistant.h"
#include "probes/HardwareInfo.h"

ExeFileRunner::ExeFileRunner(const QString& exePath, QObject* parent)
    : QObject(parent),
      m_view(new LaunchView(this)),
      m_banner(m_view->banner()),
      m_assistant(new RepairAssistant(m_view, this)) {
    m_program.file.exePath = exePath;
    connect(m_assistant, &RepairAssistant::repairing, this, [this] { m_recorder.repaired = true; });
}

ExeFileRunner::ExeFileRunner(const QString& bottle, const QString& programUuid, QObject* parent)
    : ExeFileRunner(QString(), parent) {
    m_mode = Mode::StoredProgram;
    m_program.file.bottle = bottle;
    m_program.uuid = programUuid;
}

ExeFileRunner::~ExeFileRunner() {
    delete m_executor;
    delete m_view;
}

int ExeFileRunner::init(const QString& path) {
    const QFileInfo file(path);
    if (!file.isFile() || file.size() == 0) {
        qWarning().noquote() << path << "not a file";
        return -1;
    }
    if (!file.isReadable()) {
        qWarning().noquote() << path + " is not readable, exit...";
        return -1;
    }
    if (m_executor && m_program.file.exePath == path) {
        qInfo().noquote() << path << "is aready init";
        return 0;
    }
    if (m_executor) {
        qInfo() << "delete last executor: ";
        m_executor->deleteLater();
    }
    if (m_mode != Mode::FileInConfigWindow) {
        m_view->setProgram(file.fileName(), {});
        m_view->showBanner();
    }
    qInfo().noquote() << "init for" << path;
    m_executor = new ExeFileExecutor(path, this);
    m_program.file.exePath = path;
    return 0;
}

int ExeFileRunner::run(const std::function<bool(const QString&)>& isFree) {
    if (init(m_program.file.exePath) != 0)
        return -1;
    m_mode = Mode::File;
    m_program.file.bottle = m_executor->bottlesName();
    if (isFree && !isFree(m_program.file.bottle)) {
        m_banner->hide();
        return -1;
    }
    m_program.file.name = m_executor->displayName();
    connectRun();
    m_view->setProgram(m_program.file.name, m_executor->exeIcon());
    m_startTime = QDateTime::currentDateTime();
    m_executor->start();
    return 0;
}

int ExeFileRunner::runInBottlesConfigWindow() {
    m_mode = Mode::FileInConfigWindow;
    if (init(m_program.file.exePath) != 0)
        return -1;
    m_banner->allowClose();
    m_banner->hide();
    m_program.file.bottle = m_executor->bottlesName();
    m_startTime = QDateTime::currentDateTime();
    m_configWindow = ConfigWindowSession::open(m_program.ref(), LaunchWindows::ConfigMode::Ordinary,
                                               m_startTime, m_banner, this);
    if (!m_configWindow)
        return -1;
    connect(m_configWindow, &ConfigWindowSession::closed, this, [this] {
        m_recorder.canceled = m_configWindow->isBottleUnfinished();
        finish(false);
    });
    m_program.file.name = m_executor->displayName();
    return m_configWindow->showFile(m_program) ? 0 : -1;
}

int ExeFileRunner::runProgram() {
    if (!prepareStored(Mode::StoredProgram))
        return -1;
    m_executor->launchProgram(m_program.file.bottle, m_program.uuid);
    return 0;
}

int ExeFileRunner::fixup(const QString& bottle, const QString& uuid, const QStringList& components) {
    m_program.file.bottle = bottle;
    m_program.uuid = uuid;
    if (!prepareStored(Mode::Fixup))
        return -1;
    m_view->raiseBanner();
    m_banner->showFailed(true);
    m_executor->prepareFix(bottle, uuid, components);
    m_assistant->showFixup(components);
    return 0;
}

/// False when the program cannot be started; the launch has then ended.
bool ExeFileRunner::prepareStored(Mode mode) {
    const QPointer<ExeFileRunner> alive(this);
    const auto record = readEntry();
    if (!record) {
        if (alive && !m_finishedOnce)
            Q_EMIT emit_finished();
        return false;
    }
    m_mode = mode;
    if (mode == Mode::StoredProgram)
        m_view->showBanner();
    m_startTime = QDateTime::currentDateTime();
    createStored(*record);
    return true;
}

/// Shows the stored program in the banner; returns the record of its bottle. Nothing when the bottle does not
/// have the program, and when the launch or the process ends while the service is asked.
std::optional<QJsonObject> ExeFileRunner::readEntry() {
    const QPointer<ExeFileRunner> alive(this);
    const auto record = BottlesConfig::instance()->getInLoop(m_program.file.bottle, this);
    if (!alive || m_finishedOnce || !record)
        return {};
    const std::optional<QJsonObject> entry = m_program.entry(*record);
    if (!entry)
        return {};
    m_program.file.name = ProgramRecord::name(*entry);
    m_view->setProgram(m_program.file.name, IconFile::read(ProgramRecord::icon(*entry)));
    return record;
}

void ExeFileRunner::createStored(const QJsonObject& record) {
    m_executor = new ExeFileExecutor(QString(), this);
    m_executor->setFirstRun(0);
    m_executor->setAppName(m_program.file.name);
    m_executor->bottle()->setName(m_program.file.bottle);
    m_executor->bottle()->setRecord(record);
    connectRun();
}

void ExeFileRunner::connectRun() {
    if (m_program.isPublic())
        m_banner->setCanRepair(false);
    m_assistant->follow(m_executor, m_program.file.bottle);
    m_view->follow(m_executor);
    using Self = ExeFileRunner;
    using Banner = WineExeLaunchBanner;
    connect(m_banner, &Banner::stopRunning, this, &Self::stop);
    connect(m_banner, &Banner::finished, this, [this] { finish(true); });
    connect(m_banner, &Banner::feedBackButtonClicked, this, &Self::askFeedback);
    connect(m_banner, &Banner::showLogsButtonClicked, this, &Self::showLogsDialog);
    connect(m_banner, &Banner::debugButtonClicked, this, &Self::slotsDebugButtonClicked);
    connect(m_executor, &ExeFileExecutor::runFailed, this, &Self::handleExecutorFailed);
    connect(m_executor, &ExeFileExecutor::runSuccessed, this, &Self::handleExecutorSuccess);
    connect(m_executor, &ExeFileExecutor::stopped, this, &Self::cancel);
    connect(m_executor, &ExeFileExecutor::windowPopuped, this, &Self::handleWindowPopup);
}

void ExeFileRunner::handleWindowPopup() {
    m_banner->hide();
    qInfo() << "got a window popuped";
    m_recorder.succeeded = true;
    m_program.addFile();
    m_program.recordStart({});
    QtConcurrent::run(machineInfo);  // cached for the record at the end
    if (m_program.isPublic())
        m_banner->allowClose();
}

void ExeFileRunner::handleExecutorSuccess() {
    qInfo() << "show successed";
    m_recorder.seconds = m_executor->seconds();
    m_banner->hide();
    m_program.checkLinks(true, isInstaller());
    m_banner->allowClose();
    m_recorder.succeeded = true;
    m_program.recordStart({});
    finish(true);
}

void ExeFileRunner::handleExecutorFailed(bool canFix, bool isReportSussessed) {
    qInfo() << "show failed";
    m_recorder.seconds = m_executor->seconds();
    m_recorder.succeeded = isReportSussessed;
    m_program.checkLinks(false, isInstaller());
    m_program.recordStart(m_executor->hasComeUp() ? FailedStart() : m_recorder.failedStart(*m_executor));
    if (m_mode == Mode::Fixup && !canFix) {
        finish(true);
        return;
    }
    QtConcurrent::run(machineInfo);
    if (!SessionBus::isConnected())
        m_banner->setCanRepair(false);  // every tool needs the service
    m_banner->show();
    m_banner->showFailed(canFix && !m_program.isPublic());
    if (!m_program.isPublic())
        m_assistant->showOptions(canFix);
}

void ExeFileRunner::slotsDebugButtonClicked() {
    m_configWindow = ConfigWindowSession::open(m_program.ref(), LaunchWindows::ConfigMode::Debugging,
                                               m_startTime, m_banner, this);
    if (!m_configWindow)
        return;
    if (!m_program.isStored())
        m_configWindow->selectProgram(m_program.file.exePath);
    m_banner->hide();
    connect(m_configWindow, &ConfigWindowSession::closed, m_banner, &QWidget::close);
}

void ExeFileRunner::showLogsDialog() {
    m_view->showLog([this] { return m_assistant->report(displayName()); });
}

void ExeFileRunner::askFeedback() {
    const QPointer<ExeFileRunner> alive(this);
    const int rating = m_view->askFeedback(m_program.ref(), m_executor->peInfo());
    if (alive && rating != 0)
        m_recorder.rating = rating;
}

/// The user has confirmed that the start is to be ended.
void ExeFileRunner::stop() {
    m_executor->cancelRepair();
    m_executor->closeLauncher();
    BottleTasks::killWineServer(m_program.file.bottle);
    m_banner->allowClose();
    cancel();
}

void ExeFileRunner::cancel() {
    m_recorder.canceled = true;
    m_recorder.seconds = m_executor->seconds();
    finish(true);
}

void ExeFileRunner::finish(bool cleanUp) {
    if (m_finishedOnce)
        return;
    m_finishedOnce = true;
    m_banner->hide();
    m_banner->disconnect(this);
    m_assistant->stop();
    if (m_executor) {
        m_executor->disconnect(this);
        m_executor->disconnect(m_view);
        m_executor->cancelRepair();
    }
    const bool isCanceled = m_recorder.canceled && isBottleOurs();
    LaunchCleanUp{m_program, cleanUp && isInstaller(), isCanceled}.start(fileRecord());
    m_banner->allowClose();
    m_banner->close();
    if (m_program.isStored() && !m_program.uuid.isEmpty())
        m_recorder.writeRun(m_program);
    Q_EMIT emit_finished();
    deleteLater();
}

/// The bottle was made for this launch.
bool ExeFileRunner::isBottleOurs() const {
    return (m_configWindow && m_configWindow->isBottleUnfinished()) ||
           (m_executor && m_executor->hasAskedForBottle());
}

/// What writes the record of a file's launch; nothing to do for any other launch.
std::function<void()> ExeFileRunner::fileRecord() const {
    if (m_mode != Mode::File || !m_executor || !QFileInfo(m_program.file.exePath).isFile())
        return [] {};
    return m_recorder.fileRecord(m_program, *m_executor, *m_view,
                                 BottleRecord::runner(m_executor->bottle()->lastRecord()));
}

bool ExeFileRunner::isInstaller() const {
    return m_executor && m_executor->isInstaller();
}
