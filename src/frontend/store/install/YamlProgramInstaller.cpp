#include "store/install/YamlProgramInstaller.h"

#include <QDebug>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalBlocker>
#include <QtConcurrentRun>

#include "backend/BottleRecord.h"
#include "backend/BottlesConfig.h"
#include "backend/InstallerManager.h"
#include "backend/PendingWork.h"
#include "backend/ServiceErrorText.h"
#include "backend/ServiceLoss.h"
#include "backend/ServiceThreads.h"
#include "launch/inspection/ExeFileInfo.h"
#include "launch/records/EventRecord.h"
#include "launch/records/EventWriter.h"
#include "launch/run/BottleTasks.h"
#include "launch/run/ConfigWindowSession.h"
#include "launch/run/ExeFileExecutor.h"
#include "launch/run/LaunchView.h"
#include "launch/run/RepairAssistant.h"
#include "probes/HardwareInfo.h"
#include "store/install/SetupCleanUp.h"
#include "store/install/SetupRecord.h"
#include "store/install/SetupTitle.h"
#include "store/install/YamlProgramInstallerBanner.h"

namespace {

constexpr int TickMs = 8000;
constexpr int AnimationMs = 1000;
constexpr int LastPercent = 100;

QString errorIn(const QString& resultObject) {
    return ServiceErrorText::of(QJsonDocument::fromJson(resultObject.toUtf8()).object());
}

}  // namespace

YamlProgramInstaller::YamlProgramInstaller(const QString& bottleId, const QString& yamlBase64,
                                           const QString& setupFile, QObject* parent)
    : QObject(parent),
      m_bottleId(bottleId),
      m_yamlBase64(yamlBase64),
      m_setupFile(setupFile),
      m_banner(new YamlProgramInstallerBanner),
      m_view(new LaunchView(this, m_banner)),
      m_assistant(new RepairAssistant(m_view, this)) {
    m_tick.setInterval(TickMs);
    m_animation.setDuration(AnimationMs);
    m_animation.setStartValue(0);
    m_animation.setEndValue(1);
    connect(&m_tick, &QTimer::timeout, this, [this] {
        if (m_progress.creep())
            showTitle();
    });
    connect(&m_animation, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        m_progress.progress = value.toInt();
        if (m_progress.progress <= LastPercent)
            showTitle();
    });
    connect(&m_animation, &QVariantAnimation::finished, &m_tick, qOverload<>(&QTimer::start));
}

YamlProgramInstaller::~YamlProgramInstaller() {
    if (m_isRequested && !m_setupDone && !m_hasFailed && !m_closing)
        cancelSetup();
    delete m_executor;
    delete m_view;
}

void YamlProgramInstaller::setIcon(const QIcon& icon) {
    m_icon = icon;
    m_banner->setIcon(icon);
}

void YamlProgramInstaller::start() {
    m_closing = m_setupDone = m_canceled = false;
    m_startTime = QDateTime::currentDateTime();
    connectBanner();
    connectService();
    m_view->setProgram(m_displayName, m_icon);
    m_banner->setStatus(tr("Preparing to installing"));
    m_banner->setDescription(tr("Please wait, it may take a few minutes..."));
    m_banner->showSetupStage();
    const QPointer<YamlProgramInstaller> alive(this);
    m_view->showBanner();
    if (!alive || m_closing)
        return;
    m_executor = new ExeFileExecutor(m_setupFile, this);
    QtConcurrent::run(machineInfo);  // cached for the record at the end
    m_isRequested = true;
    InstallerManager::instance()->setupYaml(m_bottleId, m_yamlBase64, this, [this](const BusResult& answer) {
        if (!answer.ok && isSettingUp(m_bottleId))
            fail(answer.errorText());
    });
}

void YamlProgramInstaller::connectBanner() {
    using Banner = WineExeLaunchBanner;
    connect(m_banner, &Banner::stopRunning, this, &YamlProgramInstaller::cancel);
    connect(m_banner, &Banner::finished, this, &YamlProgramInstaller::close);
    connect(m_banner, &Banner::showLogsButtonClicked, this,
            [this] { m_view->showLog([this] { return m_assistant->report(m_displayName); }); });
    connect(m_banner, &Banner::feedBackButtonClicked, this, [this] {
        m_view->askFeedback({m_bottleId, {}}, m_executor ? m_executor->peInfo() : QJsonObject());
    });
    connect(m_banner, &Banner::debugButtonClicked, this, &YamlProgramInstaller::onDebug);
}

/// The signals are for all bottles.
void YamlProgramInstaller::connectService() {
    using Manager = InstallerManager;
    Manager* manager = Manager::instance();
    connect(manager, &Manager::setupTitleChanged, this, [this](const QString& bottle, const QString& title) {
        if (isSettingUp(bottle))
            onTitle(title);
    });
    connect(manager, &Manager::setupDescriptionChanged, this,
            [this](const QString& bottle, const QString& text, int level) {
                if (isSettingUp(bottle))
                    onDescription(text, level);
            });
    connect(manager, &Manager::setupProgressChanged, this,
            [this](const QString& bottle, int step, int steps) {
                if (isSettingUp(bottle))
                    onStep(step, steps);
            });
    connect(manager, &Manager::setupSuccessed, this, [this](const QString& bottle) {
        if (isSettingUp(bottle))
            onSetupDone();
    });
    connect(manager, &Manager::setupFailed, this, [this](const QString& bottle, const QString& result) {
        if (isSettingUp(bottle))
            fail(errorIn(result));
    });
    whenServiceIsLost(this, [this] {
        BusResult lost;
        lost.serviceGone = true;
        if (isSettingUp(m_bottleId))
            fail(lost.errorText());
    });
}

bool YamlProgramInstaller::isSettingUp(const QString& bottle) const {
    return bottle == m_bottleId && m_isRequested && !m_setupDone && !m_hasFailed && !m_closing;
}

void YamlProgramInstaller::onTitle(const QString& title) {
    m_stepTitle = setupTitle(title);
    showTitle();
    m_view->addLine(title);
}

void YamlProgramInstaller::onDescription(const QString& text, int level) {
    m_banner->setDescription(setupTitle(text));
    if (level < 1)
        m_view->addLine(text);
}

void YamlProgramInstaller::onStep(int step, int steps) {
    stopProgress();
    const int before = m_progress.beginStep(step, steps);
    const int now = m_progress.progress;
    {
        const QSignalBlocker quiet(m_animation);  // a new end value would be shown at once
        m_animation.setStartValue(before);
        m_animation.setEndValue(now);
    }
    m_animation.start();
}

void YamlProgramInstaller::showTitle() {
    m_banner->setStatus(tr("%1 ... %2%").arg(m_stepTitle, QString::number(m_progress.progress)));
    m_banner->setProgress(m_progress.progress);
}

void YamlProgramInstaller::stopProgress() {
    m_tick.stop();
    m_animation.stop();
}

void YamlProgramInstaller::onSetupDone() {
    qInfo() << "setup ok, start to execute program";
    stopProgress();
    m_setupDone = true;
    m_banner->showRunStage();
    m_banner->setStatus(tr("Preparing to run"));
    m_banner->setDescription(tr("waiting for application to start..."));
    connectRun();
    m_executor->startIn(m_bottleId);
}

void YamlProgramInstaller::connectRun() {
    m_view->follow(m_executor);
    m_assistant->follow(m_executor, m_bottleId);
    connect(m_executor, &ExeFileExecutor::windowPopuped, m_banner, &QWidget::hide);
    connect(m_executor, &ExeFileExecutor::runSuccessed, this, [this] {
        m_succeeded = true;
        close();
    });
    connect(m_executor, &ExeFileExecutor::runFailed, this, &YamlProgramInstaller::onRunFailed);
    connect(m_executor, &ExeFileExecutor::stopped, this, [this] {
        m_succeeded = false;
        fail(tr("Abort by user"));
        close();
    });
}

/// A set-up program that came up and lacks only fonts has done its work.
void YamlProgramInstaller::onRunFailed(bool canFix, bool isSuccessed) {
    m_succeeded = isSuccessed;
    if (isSuccessed) {
        close();
        return;
    }
    m_banner->show();
    m_banner->showFailed(canFix);
    m_assistant->showOptions(canFix);
}

void YamlProgramInstaller::onDebug() {
    m_configWindow = ConfigWindowSession::open({m_bottleId, {}}, LaunchWindows::ConfigMode::Debugging,
                                               m_startTime, m_banner, this);
    if (!m_configWindow)
        return;
    m_banner->hide();
    connect(m_configWindow, &ConfigWindowSession::closed, m_banner, &QWidget::close);
}

void YamlProgramInstaller::fail(const QString& errorText) {
    qWarning().noquote() << "set-up of" << m_bottleId << "failed:" << errorText;
    m_hasFailed = true;
    stopProgress();
    m_banner->showFailed(false);
    m_banner->setStatus(tr("Manifest file setup failed"));
    m_view->addLine(tr("Setup installer failed"));
    if (errorText.isEmpty())
        return;
    m_banner->setDescription(errorText);
    m_view->addErrorLine(tr("Error message: %1").arg(errorText));
}

/// The bottle may have been ready already.
void YamlProgramInstaller::cancelSetup() {
    InstallerManager::instance()->cancelSetup(m_bottleId);
    SetupCleanUp::deleteUnused(m_bottleId);
}

void YamlProgramInstaller::cancel() {
    if (m_closing)
        return;
    if (!m_setupDone) {
        cancelSetup();
    } else {
        m_executor->cancelRepair();
        m_executor->closeLauncher();
        BottleTasks::killWineServer(m_bottleId);
    }
    m_canceled = true;
    close();
}

void YamlProgramInstaller::close() {
    if (m_closing)
        return;
    m_closing = true;
    stopProgress();
    m_assistant->stop();
    m_banner->disconnect(this);
    m_banner->allowClose();
    m_banner->close();
    if (m_executor) {
        m_executor->disconnect(this);
        m_executor->disconnect(m_view);
        m_executor->cancelRepair();
    }
    reportInstallEvent();
    if (!m_setupDone) {
        deleteLater();
        return;
    }
    const SetupCleanUp cleanUp{m_bottleId, m_setupFile, m_executor->displayName(), m_executor->isInstaller()};
    cleanUp.start([self = QPointer<YamlProgramInstaller>(this)] {
        if (self)
            self->deleteLater();
    });
}

void YamlProgramInstaller::reportInstallEvent() {
    SetupRecord record;
    record.succeeded = m_succeeded;
    record.setupFile = m_setupFile;
    record.logLines = m_view->lastLines(EventRecord::LogLines);
    record.canceled = m_canceled;
    record.isBottleReady = m_setupDone;
    const auto now = QDateTime::currentDateTime();
    PendingWork::instance()->run(ServiceThreads::inOrder(), [record, now, bottle = m_bottleId]() mutable {
        record.fileInfo = exeFileInfo(record.setupFile);
        if (record.isBottleReady) {
            const QJsonObject stored = BottlesConfig::instance()->get(bottle);
            record.runner = BottleRecord::runner(stored);
            record.programs = BottleRecord::programs(stored).size();
        }
        EventWriter::instance().writeEvent(record.toJson(EventRecord::common(now, machineInfo())));
    });
}
