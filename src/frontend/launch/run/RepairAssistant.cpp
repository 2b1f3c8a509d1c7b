#include "launch/run/RepairAssistant.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QJsonArray>
#include <QStandardPaths>
#include <QtConcurrentRun>

#include "backend/BottleRecord.h"
#include "backend/BottleRepair.h"
#include "backend/BottlesConfig.h"
#include "backend/ServiceErrorText.h"
#include "core/base/LogScrub.h"
#include "core/base/WineNames.h"
#include "fenk/system/SystemInfo.h"
#include "fenk/window/Dialog.h"
#include "launch/banner/WineExeLaunchBanner.h"
#include "launch/repair/ComponentTitle.h"
#include "launch/repair/ProblemReport.h"
#include "launch/run/ExeFileExecutor.h"
#include "launch/run/LaunchView.h"
#include "probes/HardwareInfo.h"
#include "widgets/FileChoice.h"

namespace {

enum RefusedButton { CloseButton, ChooseAgainButton };

QString systemName() {
    const Fenk::SystemInfo system;
    return QStringList{system.systemName(), system.majorVersion(), system.editionName(),
                       "Linux " + QSysInfo::kernelVersion(), QSysInfo::currentCpuArchitecture()}
        .join(' ')
        .simplified();
}

QString sessionName() {
    return QStringList{qEnvironmentVariable("XDG_CURRENT_DESKTOP"), qEnvironmentVariable("XDG_SESSION_TYPE")}
        .join(' ')
        .trimmed();
}

}  // namespace

RepairAssistant::RepairAssistant(LaunchView* view, QObject* parent)
    : QObject(parent), m_view(view), m_banner(view->banner()) {
    // Queued: a repair changes the buttons that were clicked.
    connect(m_banner, &WineExeLaunchBanner::repairButtonClicked, this, &RepairAssistant::repair,
            Qt::QueuedConnection);
    connect(m_banner, &WineExeLaunchBanner::retryButtonClicked, this, &RepairAssistant::retry,
            Qt::QueuedConnection);
    connect(m_banner, &WineExeLaunchBanner::chooseFileButtonClicked, this, &RepairAssistant::chooseFile);
}

void RepairAssistant::follow(ExeFileExecutor* executor, const QString& bottle) {
    m_executor = executor;
    m_bottle = bottle;
    connect(executor, &ExeFileExecutor::Fixing, this, [this] {
        ++m_round;
        m_failures.clear();
    });
    connect(executor, &ExeFileExecutor::componentFailed, this,
            [this](const QString& component, const QString& reason) {
                m_failures.append({component, reason});
                m_allFailures.append({component, reason});
            });
}

void RepairAssistant::stop() {
    m_executor = nullptr;
}

void RepairAssistant::repair() {
    if (!m_executor)
        return;
    Q_EMIT repairing();
    m_banner->showRunning();
    m_executor->applyFix();
}

void RepairAssistant::retry() {
    const QStringList components = failedComponents();
    if (!m_executor || components.isEmpty())
        return;
    Q_EMIT repairing();
    m_banner->showRunning();
    m_executor->retryFix(components);
}

QStringList RepairAssistant::failedComponents() const {
    QStringList names;
    for (const Failure& failure : m_failures) {
        if (failure.component != WineNames::stagingRunner())
            names += failure.component;
    }
    return names;
}

void RepairAssistant::showOptions(bool canFix) {
    ++m_round;
    m_choosable.clear();
    m_banner->setRepairDetails({});
    fetchFacts();
    showFailures();
    if (canFix)
        describeOffer();
    else if (!failedComponents().isEmpty())
        describeFailed();
}

void RepairAssistant::showFixup(const QStringList& components) {
    // The executor has sent one line for each, of which only the last would stay.
    m_banner->setDescription(
        QCoreApplication::translate("ExeFileExecutor", "Try to fix application with those components:") +
        ' ' + components.join(", "));
    showOptions(true);
}

/// Called last: its text stays as the description.
void RepairAssistant::showFailures() {
    QString last;
    for (const Failure& failure : qAsConst(m_failures)) {
        const QString title = componentTitle(failure.component);
        last = failure.reason.isEmpty() ? tr("%1 could not be installed.").arg(title)
                                        : tr("%1 could not be installed: %2").arg(title, failure.reason);
        m_view->addErrorLine(last);
    }
    if (!last.isEmpty())
        m_banner->setDescription(last);
}

void RepairAssistant::describeOffer() {
    const int round = m_round;
    RepairOffer offer;
    offer.action = m_executor->diagnosis().action;
    offer.fonts = m_executor->fonts();
    const auto onAnswer = [this, round, offer](const BusResult& answer) mutable {
        if (round != m_round)
            return;
        if (!answer.ok)
            qWarning().noquote() << "no description of the repair of" << m_bottle << answer.errorMessage;
        offer.components = OfferedComponent::read(answer.array());
        showOffer(offer);
    };
    const QStringList components = m_executor->components();
    if (!components.isEmpty())
        BottleRepair::instance()->describeDependencies(m_bottle, components, this, onAnswer);
    else if (offer.action == RepairAction::SwitchToStaging)
        BottleRepair::instance()->describeRunner(m_bottle, WineNames::stagingRunner(), this, onAnswer);
    else
        showOffer(offer);
}

void RepairAssistant::showOffer(const RepairOffer& offer) {
    for (const RepairOffer::Line& line : offer.lines())
        line.isError ? m_view->addErrorLine(line.text) : m_view->addLine(line.text);
    m_banner->setRepairDetails(offer.toolTip());
}

void RepairAssistant::describeFailed() {
    const int round = m_round;
    BottleRepair::instance()->describeDependencies(
        m_bottle, failedComponents(), this, [this, round](const BusResult& answer) {
            if (round != m_round)
                return;
            m_choosable.clear();
            for (const OfferedComponent& component : OfferedComponent::read(answer.array())) {
                if (!component.files.isEmpty())
                    m_choosable += component;
            }
            m_banner->offerRetry(!m_choosable.isEmpty());
        });
}

void RepairAssistant::fetchFacts() {
    m_machine = QtConcurrent::run(machineInfo);
    BottlesConfig* config = BottlesConfig::instance();
    config->watchBottle(m_bottle, this, [this, config](const BusResult& answer) {
        m_runner = BottleRecord::runner(answer.object());
        if (!m_runner.isEmpty())
            config->watchRunnerVersion(m_runner, this,
                                       [this](const BusResult& version) { m_wine = version.text; });
    });
}

void RepairAssistant::chooseFile() {
    if (m_choosable.isEmpty())
        return;
    QString wanted = m_choosable.first().title;
    for (const OfferedFile& file : qAsConst(m_choosable.first().files)) {
        if (!file.isCached) {
            wanted = file.name;
            break;
        }
    }
    QFileDialog* dialog =
        FileChoice::make(FileChoice::Kind::Installer, m_banner, tr("Choose %1").arg(wanted),
                         QStandardPaths::writableLocation(QStandardPaths::DownloadLocation),
                         tr("Installers") + " (*.exe *.msi *.cab *.zip *.7z);;" + tr("All files") + " (*)");
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& path) {
        m_banner->setDescription(tr("Checking %1").arg(QFileInfo(path).fileName()));
        submitFile(QFileInfo(path).canonicalFilePath(), 0, {});
    });
    dialog->open();
}

/// Offers the file to each component that failed, until one accepts it.
void RepairAssistant::submitFile(const QString& path, int index, const QString& firstReason) {
    if (index >= m_choosable.size()) {
        showRefusal(firstReason);
        return;
    }
    const int round = m_round;
    BottleRepair::instance()->takeFile(
        m_bottle, m_choosable[index].name, path, this,
        [this, round, path, index, firstReason](const BusResult& answer) {
            if (round != m_round)
                return;
            const QJsonObject result = answer.object();
            if (!answer.ok || !result["ok"].toBool()) {
                const QString reason = answer.ok ? ServiceErrorText::of(result) : answer.errorText();
                submitFile(path, index + 1, firstReason.isEmpty() ? reason : firstReason);
                return;
            }
            m_view->addLine(tr("%1 was chosen by hand.").arg(result["file"].toString()));
            QMetaObject::invokeMethod(this, &RepairAssistant::retry, Qt::QueuedConnection);
        });
}

void RepairAssistant::showRefusal(const QString& reason) {
    m_view->addErrorLine(reason);
    m_banner->setDescription(reason);
    auto* dialog = new Fenk::Dialog(tr("This File Cannot Be Used"), reason, m_banner);
    dialog->setAccessibleName("other_file_dialog");
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->addButton(tr("Close"));
    dialog->addButton(tr("Choose Again"), true, Fenk::Dialog::ButtonRecommend);
    connect(dialog, &Fenk::Dialog::buttonClicked, this, [this](int index) {
        if (index == ChooseAgainButton)
            chooseFile();
    });
    dialog->open();
}

QString RepairAssistant::report(const QString& appName) const {
    ProblemReport report;
    report.program = appName;
    report.cellarix = QCoreApplication::applicationVersion();
    report.runner = m_runner;
    report.wine = m_wine;
    report.system = systemName();
    report.session = sessionName();
    if (m_machine.isFinished() && m_machine.resultCount() > 0) {
        for (const QJsonValue& device : m_machine.result()["hardware"].toObject()["gpus"].toArray())
            report.graphics += device["gpu"].toString() + " (" + device["module"].toString() + ')';
    }
    if (m_executor) {
        report.programVersion = m_executor->peInfo().value("ProductVersion").toString();
        report.diagnosis = m_executor->diagnosis().reason;
        for (const QString& component : m_executor->triedComponents())
            report.tried += tr("%1 was installed.").arg(componentTitle(component));
    }
    for (const Failure& failure : m_allFailures) {
        report.tried.removeAll(tr("%1 was installed.").arg(componentTitle(failure.component)));
        report.tried +=
            tr("%1 could not be installed: %2").arg(componentTitle(failure.component), failure.reason);
    }
    report.log = m_view->lastLines(ProblemReport::LogLines);
    return report.text(LogScrub());
}
