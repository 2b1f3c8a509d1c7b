// The second half of ExeFileRunner: the windows that a launch opens, and its end.
#include <QCoreApplication>
#include <QEventLoop>
#include <QFileInfo>
#include <QPointer>
#include <QRegularExpression>

#include "backend/BottleUtils.h"
#include "backend/BottlesConfig.h"
#include "backend/PendingWork.h"
#include "backend/ServiceLoss.h"
#include "backend/ServiceThreads.h"
#include "core/base/WineNames.h"
#include "launch/banner/WineExeLaunchBanner.h"
#include "launch/records/AppBootingStateManager.h"
#include "launch/records/EventRecord.h"
#include "launch/records/EventWriter.h"
#include "launch/records/LaunchRecord.h"
#include "launch/run/BottleTasks.h"
#include "launch/run/ExeFileExecutor.h"
#include "launch/run/ExeFileRunner.h"
#include "launch/run/LaunchCleanUp.h"
#include "launch/run/RepairAssistant.h"
#include "probes/HardwareInfo.h"
#include "widgets/LogsWidget.h"
#include "widgets/RunningLogsDialog.h"

int ExeFileRunner::runInBottlesConfigWindow() {
    m_mode = FileInConfigWindow;
    if (init(m_exePath) != 0)
        return -1;
    m_banner->allowClose();
    m_banner->hide();
    m_bottlesName = m_executor->bottlesName();
    const auto open = LaunchWindows::instance().configuration;
    const QPointer<BottleConfigWindow> window =
        open ? open({m_bottlesName, {}}, LaunchWindows::ConfigMode::Ordinary, m_banner) : nullptr;
    if (!window)
        return -1;
    connect(window, &BottleConfigWindow::closed, this, [this] {
        const QPointer<ExeFileRunner> alive(this);
        m_canceled = m_isBottleNew;
        if (!m_canceled)
            collectLinks();
        if (alive)
            finish(false);
    });
    QCoreApplication::processEvents();
    if (window)
        window->setLoading(true);
    m_startTime = QDateTime::currentDateTime();
    m_appName = m_executor->displayName();
    const QPointer<ExeFileRunner> alive(this);
    if (window && !BottlesConfig::instance()->list().contains(m_bottlesName))
        createBottle();
    if (!alive || !window)
        return -1;  // closed meanwhile
    m_isBottleNew = false;
    addFile();
    window->selectProgram(m_exePath);
    window->setLoading(false);
    return 0;
}

void ExeFileRunner::createBottle() {
    BottlesConfig* config = BottlesConfig::instance();
    config->disconnect(this);
    qInfo().noquote() << "Waiting for bottles create..." << m_bottlesName;
    const QString bottle = m_bottlesName;
    QEventLoop loop;
    connect(config, &BottlesConfig::bottlesCreated, &loop, [&](const QString& created) {
        if (created == bottle)
            loop.quit();
    });
    connect(this, &QObject::destroyed, &loop, &QEventLoop::quit);
    whenServiceIsLost(&loop, [&loop] { loop.quit(); });
    m_isBottleNew = true;
    config->createBottles(bottle, WineNames::defaultRunner());
    loop.exec();
    qInfo().noquote() << "Bottles created..." << bottle;
}

/// Wine's own maker of menu entries is switched off in the bottles, whatever their runner.
void ExeFileRunner::collectLinks() {
    BottlesConfig::instance()->scanApplicationLinks(m_bottlesName, m_startTime, this);
}

void ExeFileRunner::slotsDebugButtonClicked() {
    const auto open = LaunchWindows::instance().configuration;
    BottleConfigWindow* window =
        open ? open({m_bottlesName, m_programUuid}, LaunchWindows::ConfigMode::Debugging, m_banner) : nullptr;
    if (!window)
        return;
    m_banner->hide();
    connect(window, &BottleConfigWindow::closed, this, [this] {
        const QPointer<ExeFileRunner> alive(this);
        collectLinks();
        if (alive)
            m_banner->close();
    });
}

void ExeFileRunner::showLogsDialog() {
    auto* dialog = new RunningLogsDialog(m_logsWidget, m_banner);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &RunningLogsDialog::reportWanted, this,
            [this, dialog] { dialog->copyReport(m_assistant->report(m_appName)); });
    dialog->exec();
}

void ExeFileRunner::askFeedback() {
    const QJsonObject peInfo = m_executor->peInfo();
    QString version = peInfo.value("ProductVersion").toString();
    if (version.isEmpty())
        version = peInfo.value("FileVersion").toString();
    version.replace(QRegularExpression(QStringLiteral("[,.\uff0c]")), ".").remove(' ');
    const auto ask = LaunchWindows::instance().feedback;
    if (!ask)
        return;
    const QPointer<ExeFileRunner> alive(this);
    const int rating = ask({m_bottlesName, m_programUuid}, m_appName, version, m_banner);
    if (alive && rating != 0)
        m_rating = rating;
}

/// The user has confirmed that the start shall be given up.
void ExeFileRunner::stop() {
    m_canceled = true;
    m_elapsedSeconds = m_executor->seconds();
    m_executor->cancelRepair();
    m_executor->closeLauncher();
    BottleTasks::killWineServer(m_bottlesName);
    m_banner->allowClose();
    finish(true);
}

/// The program is gone already, and whoever has ended it needs no banner to say so.
void ExeFileRunner::handleExecutorStopped() {
    m_canceled = true;
    m_elapsedSeconds = m_executor->seconds();
    finish(true);
}

void ExeFileRunner::finish(bool cleanUp) {
    if (m_finishedOnce)
        return;
    m_finishedOnce = true;
    m_banner->hide();
    m_banner->disconnect(this);
    if (m_executor) {
        m_executor->disconnect(this);
        m_executor->cancelRepair();
    }
    leaveBottle(cleanUp, launchRecord());
    m_banner->allowClose();
    m_banner->close();
    writeRunRecord();
    Q_EMIT emit_finished();
    deleteLater();
}

/// The set-up file is of no more use, and a bottle that was made for a launch which never came about is of
/// none. Calls then when the bottle is what it will be.
void ExeFileRunner::leaveBottle(bool cleanUp, const std::function<void()>& then) {
    const bool isSetUp = cleanUp && isInstaller();
    const bool isAskedFor = m_isBottleNew || (m_executor && m_executor->hasAskedForBottle());
    if (isSetUp || (m_canceled && isAskedFor))
        LaunchCleanUp{{m_bottlesName, m_appName, m_exePath}, isSetUp, m_added}.start(then);
    else
        then();
}

/// Waits for it, if the entry is being made.
QString ExeFileRunner::addedUuid() const {
    return m_added.isCanceled() ? QString() : m_added.result();
}

void ExeFileRunner::writeRunRecord() const {
    if (m_mode == StoredProgram && !m_programUuid.isEmpty())
        AppBootingStateManager::instance()->writeRunEvent(m_bottlesName, m_programUuid, m_succeeded,
                                                          float(m_elapsedSeconds),
                                                          {{"canceled", m_canceled ? "yes" : "no"}});
}

/// Takes down what is known now. What is returned writes it, in the background, with the programs that the
/// bottle has by then.
std::function<void()> ExeFileRunner::launchRecord() const {
    if (m_mode != File || !m_executor || m_exePath.isEmpty() || !QFileInfo(m_exePath).isFile())
        return [] {};
    LaunchRecord record;
    record.succeeded = m_succeeded;
    record.exePath = m_exePath;
    record.fileInfo = m_executor->fileInfo();
    record.logLines = m_logsWidget->lastLines(EventRecord::LogLines);
    record.rating = m_rating;
    record.runner = BottleUtils::bottleRunner(m_bottlesName);
    record.repaired = m_repaired;
    record.canceled = m_canceled;
    return [record, bottle = m_bottlesName, added = m_added, now = QDateTime::currentDateTime()] {
        PendingWork::instance()->run(ServiceThreads::inOrder(), [=]() mutable {
            added.waitForFinished();
            record.programs = BottleUtils::bottlePrograms(bottle).size();
            EventWriter::instance().writeEvent(record.toJson(EventRecord::common(now, machineInfo())));
        });
    };
}
