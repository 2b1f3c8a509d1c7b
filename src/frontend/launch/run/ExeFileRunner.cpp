#include "launch/run/ExeFileRunner.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEvent>
#include <QFileInfo>
#include <QTimer>
#include <QtConcurrentRun>

#include "backend/BottleRecord.h"
#include "backend/BottleUtils.h"
#include "backend/BottlesConfig.h"
#include "backend/PendingWork.h"
#include "backend/ProgramRecord.h"
#include "backend/ServiceThreads.h"
#include "backend/SessionBus.h"
#include "core/base/Logging.h"
#include "core/base/WineNames.h"
#include "fenk/style/Theme.h"
#include "launch/banner/RunningProgramsQuestion.h"
#include "launch/banner/WineExeLaunchBanner.h"
#include "launch/icons/IconFile.h"
#include "launch/open/FileEntry.h"
#include "launch/records/FailedStarts.h"
#include "launch/run/ExeFileExecutor.h"
#include "launch/run/RepairAssistant.h"
#include "probes/HardwareInfo.h"
#include "widgets/LogsWidget.h"

namespace {

enum LogLevel { ErrorLine = 1, OrdinaryLine = 3 };

constexpr int FirstPaintMs = 100;

/// Whether a window has got on the screen.
class PaintWatch : public QObject {
public:
    explicit PaintWatch(QWidget* window) { window->installEventFilter(this); }
    bool isPainted() const { return m_painted; }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        m_painted = m_painted || event->type() == QEvent::Paint;
        return false;
    }

private:
    bool m_painted = false;
};

}  // namespace

ExeFileRunner::ExeFileRunner(const QString& exePath, QObject* parent)
    : QObject(parent),
      m_banner(new WineExeLaunchBanner),
      m_logsWidget(new LogsWidget),
      m_assistant(new RepairAssistant(m_banner, m_logsWidget, this)),
      m_exePath(exePath) {
    connect(m_assistant, &RepairAssistant::retry, this, &ExeFileRunner::retryRepair, Qt::QueuedConnection);
}

ExeFileRunner::ExeFileRunner(const QString& bottle, const QString& programUuid, QObject* parent)
    : ExeFileRunner(QString(), parent) {
    m_mode = StoredProgram;
    m_bottlesName = bottle;
    m_programUuid = programUuid;
}

ExeFileRunner::~ExeFileRunner() {
    delete m_executor;
    delete m_banner;
    delete m_logsWidget;
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
    if (m_executor && m_exePath == path) {
        qInfo().noquote() << path << "is aready init";
        return 0;
    }
    if (m_executor) {
        qInfo() << "delete last executor: ";
        m_executor->deleteLater();
    }
    if (m_mode != FileInConfigWindow) {
        m_banner->setAppName(file.fileName());
        m_banner->setIcon(Fenk::Theme::icon("cxb_app_default_icon"));
        m_banner->setStatus(QString());
        m_banner->setDescription(QString());
        showBanner();
    }
    qInfo().noquote() << "init for" << path;
    m_executor = new ExeFileExecutor(path, this);
    m_exePath = path;
    return 0;
}

void ExeFileRunner::raiseBanner() {
    m_banner->show();
    m_banner->raise();
    m_banner->activateWindow();
}

/// Until the window is on the screen: what comes next reads the file and asks the service, and does not let
/// the window paint.
void ExeFileRunner::showBanner() {
    qInfo() << "show banner";
    const PaintWatch watch(m_banner);
    raiseBanner();
    const QDeadlineTimer end(FirstPaintMs);
    QTimer wake;
    wake.start(FirstPaintMs);
    while (!watch.isPainted() && !end.hasExpired())
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::WaitForMoreEvents);
}

int ExeFileRunner::run(const std::function<bool(const QString&)>& isFree) {
    if (init(m_exePath) != 0)
        return -1;
    m_mode = File;
    m_bottlesName = m_executor->bottlesName();
    if (isFree && !isFree(m_bottlesName)) {
        m_banner->hide();
        return -1;
    }
    fillFromFile();
    connectRun();
    m_startTime = QDateTime::currentDateTime();
    m_executor->start();
    return 0;
}

void ExeFileRunner::fillFromFile() {
    if (isPublic())
        m_banner->setCanRepair(false);
    m_appName = m_executor->displayName();
    m_banner->setAppName(m_appName);
    connect(m_executor, &ExeFileExecutor::iconReady, m_banner, &WineExeLaunchBanner::setIcon);
    m_banner->setIcon(m_executor->exeIcon());
    m_banner->setStatus(QString());
    m_banner->setDescription(QString());
}

int ExeFileRunner::checkEntry() const {
    const QJsonObject record = BottlesConfig::instance()->get(m_bottlesName);
    if (record.isEmpty()) {
        qWarning().noquote() << "Invalid bottles name:" << m_bottlesName;
        return -1;
    }
    if (!BottleRecord::programs(record).contains(m_programUuid)) {
        qWarning().noquote() << "Program UUID" << m_programUuid << "not found in bottles:" << m_bottlesName;
        return -1;
    }
    return 0;
}

int ExeFileRunner::runProgram() {
    if (checkEntry() != 0) {
        Q_EMIT emit_finished();
        return -1;
    }
    m_mode = StoredProgram;
    fillFromRecord();
    showBanner();
    m_startTime = QDateTime::currentDateTime();
    createStored();
    m_executor->launchProgram(m_bottlesName, m_programUuid);
    return 0;
}

int ExeFileRunner::fixup(const QString& bottle, const QString& uuid, const QStringList& components) {
    m_bottlesName = bottle;
    m_programUuid = uuid;
    if (checkEntry() != 0) {
        Q_EMIT emit_finished();
        return -1;
    }
    m_mode = StoredProgram;
    m_isFixup = true;
    m_startTime = QDateTime::currentDateTime();
    fillFromRecord();
    createStored();
    raiseBanner();
    m_banner->showFailed(true);
    m_executor->prepareFix(bottle, uuid, components);
    // Told line by line, of which only the last would stay.
    m_banner->setDescription(
        QCoreApplication::translate("ExeFileExecutor", "Try to fix application with those components:") +
        ' ' + components.join(", "));
    m_assistant->showWays(true);
    return 0;
}

void ExeFileRunner::createStored() {
    m_executor = new ExeFileExecutor(QString(), this);
    m_executor->setFirstRun(0);
    m_executor->setAppName(m_appName);
    connectRun();
}

void ExeFileRunner::fillFromRecord() {
    if (isPublic())
        m_banner->setCanRepair(false);
    const QJsonObject program = BottleUtils::bottlePrograms(m_bottlesName).value(m_programUuid).toObject();
    m_appName = ProgramRecord::name(program);
    const QIcon icon = IconFile::read(ProgramRecord::icon(program));
    m_banner->setAppName(m_appName);
    m_banner->setIcon(icon.isNull() ? Fenk::Theme::icon("cxb_app_default_icon") : icon);
    m_banner->setStatus(QString());
    m_banner->setDescription(QString());
}

void ExeFileRunner::connectRun() {
    m_assistant->follow(m_executor, m_bottlesName);
    connect(m_executor, &ExeFileExecutor::emitStep, this, &ExeFileRunner::onStep);
    connect(m_executor, &ExeFileExecutor::emitMsg, this, &ExeFileRunner::onMessage);
    connect(m_banner, &WineExeLaunchBanner::stopRunning, this, &ExeFileRunner::stop);
    connect(m_banner, &WineExeLaunchBanner::finished, this, [this] { finish(true); });
    connect(m_banner, &WineExeLaunchBanner::feedBackButtonClicked, this, &ExeFileRunner::askFeedback);
    connect(m_banner, &WineExeLaunchBanner::showLogsButtonClicked, this, &ExeFileRunner::showLogsDialog);
    connect(m_banner, &WineExeLaunchBanner::debugButtonClicked, this,
            &ExeFileRunner::slotsDebugButtonClicked);
    connect(m_banner, &WineExeLaunchBanner::repairButtonClicked, this, &ExeFileRunner::repair,
            Qt::QueuedConnection);
    connect(m_executor, &ExeFileExecutor::runFailed, this, &ExeFileRunner::handleExecutorFailed);
    connect(m_executor, &ExeFileExecutor::runSuccessed, this, &ExeFileRunner::handleExecutorSuccess);
    connect(m_executor, &ExeFileExecutor::stopped, this, &ExeFileRunner::handleExecutorStopped);
    connect(m_executor, &ExeFileExecutor::programsRunning, this, &ExeFileRunner::askToClosePrograms);
    connect(m_executor, &ExeFileExecutor::windowPopuped, this, &ExeFileRunner::handleWindowPopup);
    connect(m_executor, &ExeFileExecutor::Fixing, m_banner, &QWidget::show);
    connect(m_executor, &ExeFileExecutor::lingers, m_banner, &QWidget::show);
}

void ExeFileRunner::onStep(const QString& text, MsgType type) {
    m_banner->setStatus(text);
    if (type != MsgStatus)
        m_logsWidget->appendLine(cleanHomePaths(text), OrdinaryLine);
}

void ExeFileRunner::onMessage(const QString& text, MsgType type) {
    m_banner->setDescription(text);
    if (type != MsgStatus)
        m_logsWidget->appendLine(cleanHomePaths(text), type == MsgError ? ErrorLine : OrdinaryLine);
}

void ExeFileRunner::repair() {
    if (m_finishedOnce || !m_executor)
        return;
    m_repaired = true;
    m_banner->showRunning();
    m_executor->applyFix();
}

void ExeFileRunner::retryRepair() {
    const QStringList components = m_assistant->failedComponents();
    if (m_finishedOnce || !m_executor || components.isEmpty())
        return;
    m_repaired = true;
    m_banner->showRunning();
    m_executor->retryFix(components);
}

void ExeFileRunner::askToClosePrograms(const QStringList& names) {
    m_banner->show();
    auto* question = new RunningProgramsQuestion(m_appName, names, m_banner);
    connect(question, &RunningProgramsQuestion::answered, m_executor,
            &ExeFileExecutor::answerProgramsRunning);
    question->open();
}

void ExeFileRunner::handleWindowPopup() {
    m_banner->hide();
    qInfo() << "got a window popuped";
    m_succeeded = true;
    if (m_mode == File)
        addFile();
    recordStart(true);
    QtConcurrent::run(machineInfo);  // for the record at the end, which it would keep waiting
    if (isPublic())
        m_banner->allowClose();
}

void ExeFileRunner::handleExecutorSuccess() {
    qInfo() << "show successed";
    m_elapsedSeconds = m_executor->seconds();
    m_banner->hide();
    checkLinks(true);
    m_banner->allowClose();
    m_succeeded = true;
    recordStart(true);
    finish(true);
}

void ExeFileRunner::handleExecutorFailed(bool canFix, bool isReportSussessed) {
    qInfo() << "show failed";
    m_elapsedSeconds = m_executor->seconds();
    m_succeeded = isReportSussessed;
    checkLinks(false);
    recordStart(m_executor->hasComeUp());
    if (m_isFixup && !canFix) {
        finish(true);
        return;
    }
    QtConcurrent::run(machineInfo);
    if (!SessionBus::isConnected())
        m_banner->setCanRepair(false);  // every tool needs the service
    m_banner->show();
    m_banner->showFailed(canFix && !isPublic());
    if (!isPublic())
        m_assistant->showWays(canFix);
}

void ExeFileRunner::checkLinks(bool success) {
    m_linksCreated = !BottleUtils::bottlePrograms(m_bottlesName).isEmpty();
    qInfo().noquote() << "lnk created: " << (m_linksCreated ? "true" : "false");
    if (!m_linksCreated && (!isInstaller() || !success))
        addFile();
}

void ExeFileRunner::addFile() {
    if (m_exePath.isEmpty())
        return;
    if (addedUuid().isEmpty())
        m_added = PendingWork::instance()->run(
            ServiceThreads::pool(),
            [entry = FileEntry{m_bottlesName, m_appName, m_exePath}] { return entry.add(); });
}

/// For the library, where the program's tile shows it. A file's entry may be in the making.
void ExeFileRunner::recordStart(bool good) {
    FailedStart start;
    if (!good) {
        const QString reason = m_executor->diagnosis().reason;
        start = {reason.isEmpty() ? LaunchVerdict::nothingFixedMessage(m_repaired) : reason,
                 m_executor->components()};
    }
    FailedStarts* records = FailedStarts::instance();
    if (m_mode == StoredProgram) {
        records->record(m_bottlesName, m_programUuid, start);
        return;
    }
    PendingWork::instance()->run(
        ServiceThreads::pool(),
        [start, records, added = m_added, entry = FileEntry{m_bottlesName, m_appName, m_exePath}]() mutable {
            added.waitForFinished();
            const QString uuid = entry.find();
            if (!uuid.isEmpty())
                QMetaObject::invokeMethod(records, [start, records, uuid, bottle = entry.bottle] {
                    records->record(bottle, uuid, start);
                });
        });
}

bool ExeFileRunner::isPublic() const {
    return WineNames::isPublicBottle(m_bottlesName);
}

bool ExeFileRunner::isInstaller() const {
    return m_executor && m_executor->isInstaller();
}
