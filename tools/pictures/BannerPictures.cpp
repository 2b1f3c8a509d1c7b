// Pictures of the launch's windows with sample data: banner-pictures STATE [--theme light|dark] --screenshot
// FILE. LANG chooses English or Chinese. A new state is a line in the table below.
#include <QApplication>
#include <QPushButton>
#include <QTimer>

#include "Pictures.h"
#include "backend/SessionBus.h"
#include "core/ServiceAgreement.h"
#include "environment/BottleEnvScript.h"
#include "environment/EnvInitBanner.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "launch/banner/BannerCloseConfirmDialog.h"
#include "launch/banner/RefusalNotice.h"
#include "launch/banner/RunningProgramsQuestion.h"
#include "launch/banner/WineExeLaunchBanner.h"
#include "launch/repair/Diagnosis.h"
#include "launch/repair/FailureFacts.h"
#include "launch/repair/RepairOffer.h"
#include "launch/script/LauncherExit.h"
#include "widgets/LogsWidget.h"
#include "widgets/RunningLogsDialog.h"

using namespace Fenk;

namespace {

struct Banner : WineExeLaunchBanner {
    explicit Banner(const QString& name = "Harbour Office",
                    const char* description = "Choose wine version: %1",
                    const QString& detail = "lumora-wine8-stable") {
        const auto word = [](const char* text) {
            return QCoreApplication::translate("ExeFileExecutor", text);
        };
        setAppName(name);
        setIcon(Theme::icon("cxb_app_default_icon"));
        setStatus(word("Launching"));
        setDescription(word(description).arg(detail));
    }
};

QImage failed(bool canRepair, bool canFix) {
    Banner banner("Harbour Office Professional Setup");
    banner.setCanRepair(canRepair);
    FailureFacts facts;
    facts.signs = {{Failure::MissingWinRT, "Windows.UI.Notifications.ToastNotificationManager", {}}};
    if (canFix) {
        facts.signs = {{Failure::MissingDll, "mfc42.dll", "mfc42"}};
        facts.components << "mfc42";
    }
    banner.setDescription(Diagnosis::of(facts).reason);
    banner.showFailed(canFix);
    return picture({&banner});
}

/// The longest that there is to read.
QImage commands() {
    Banner banner("Harbour Office Professional Setup");
    banner.setDescription(LauncherExit::needs32BitText("Harbour Office Professional Setup"));
    banner.showFailed(false);
    banner.offerRetry(true);
    return picture({&banner});
}

QImage running() {
    Banner banner;
    return picture({&banner});
}

QImage firstRun() {
    Banner banner("Harbour Office",
                  "The first run needs an environment, which takes about half a minute: %1%", "41");
    return picture({&banner});
}

QImage confirm() {
    Banner banner;
    BannerCloseConfirmDialog dialog(&banner);
    dialog.setAttribute(Qt::WA_DeleteOnClose, false);
    return picture({&banner, &dialog});
}

QImage refused() {
    const auto text = [](const char* source) { return QCoreApplication::translate("OpenRefusal", source); };
    RefusalNotice::show("/home/user/Harbour Office (arm64).exe",
                        {text("It is made for Windows on ARM, and this computer has another kind of "
                              "processor."),
                         text("Download the version for x64 or x86."),
                         {}},
                        nullptr);
    return picture({QApplication::topLevelWidgets().first()});
}

QImage withoutBus() {
    Banner banner;
    banner.setDescription(SessionBus::missingText());
    banner.setCanRepair(false);
    banner.showFailed(false);
    return picture({&banner});
}

QImage runningPrograms() {
    Banner banner;
    banner.setStatus(QCoreApplication::translate("DependencyInstallQueue", "Fixing"));
    RunningProgramsQuestion dialog("Harbour Office", {"Harbour Mail", "notes.exe"}, &banner);
    dialog.setAttribute(Qt::WA_DeleteOnClose, false);
    return picture({&banner, &dialog});
}

QImage logs() {
    Banner banner;
    banner.showFailed(true);
    LogsWidget log;
    const auto text = [](const char* source) {
        return QCoreApplication::translate("ExeFileExecutor", source);
    };
    log.appendLine(text("Initializing Envrironment"), 3);
    log.appendLine(text("Choose wine version: %1").arg("lumora-wine8-stable"), 3);
    log.appendLine(text("Launching %1").arg("Harbour Office"), 3);
    log.appendLine(
        "0024:err:module:import_dll Library MSVCP140.dll (which is needed by "
        "L\"C:\\\\Program Files\\\\Harbour\\\\office.exe\") not found",
        1);
    log.appendLine(text("Parsing wine logs and fix application"), 3);
    log.appendLine("0024:fixme:ntdll:NtQuerySystemInformation info_class SYSTEM_PERFORMANCE_INFORMATION", 1);
    log.appendLine(text("Try to fix application with those components:") + "\n- vcredist2022", 3);
    RepairOffer offer;
    offer.components = {{"vcredist2022",
                         "Visual C++ 2015-2022",
                         true,
                         {},
                         {},
                         {},
                         {{"vc_redist.x86.exe", 13953736, false, "aka.ms"}}}};
    for (const RepairOffer::Line& line : offer.lines())
        log.appendLine(line.text, 3);
    RunningLogsDialog dialog(&log, &banner);
    return picture({&banner, &dialog});
}

QImage retry(bool canChooseFile) {
    Banner banner("Harbour Office Professional Setup");
    banner.setDescription(
        QCoreApplication::translate("RepairAssistant", "%1 could not be installed: %2")
            .arg("Visual C++ 2015-2022",
                 QCoreApplication::translate("ServiceErrorText",
                                             "%1 could not be fetched from %2: the server answers %3.")
                     .arg("vc_redist.x86.exe", "https://aka.ms/vs/17/vc_redist.x86.exe", "404")));
    banner.showFailed(false);
    banner.offerRetry(canChooseFile);
    return picture({&banner});
}

QImage environment(const QString& state) {
    EnvInitBanner banner;
    const BottleEnvScript& script = envInitScript();
    banner.showRunning(script.title);
    banner.appendLines({"Making the template of lumora-wine10-stable.", "Made it in 12 s.",
                        "Making the template of ge-proton10.", "Made it in 19 s."});
    if (state == "logs")
        banner.findChild<QPushButton*>("expand_logsbtn")->click();
    if (state == "done")
        banner.showCompleted(script.completedTitle, script.completedMessage);
    if (state == "failed")
        banner.showNotStarted(EnvInitBanner::tr("The setup did not start"),
                              EnvInitBanner::tr("%1 cannot be run. Please install Cellarix again.")
                                  .arg("init-bottle-in-client.sh"));
    if (state == "retry")
        banner.showCompleted(script.completedTitle, script.completedMessage);
    if (state == "retry" || state == "failed")
        banner.offerRetry(state == "retry"
                              ? EnvInitBanner::tr("Not all of it succeeded (exit code %1)").arg(1)
                              : QString());
    return picture({&banner});
}

/// The question runs an event loop of its own.
QImage agreement() {
    QImage result;
    QTimer::singleShot(0, qApp, [&result] {
        auto* dialog = QApplication::activeModalWidget();
        settle(Tokens::FadeMs);
        result = picture({dialog});
        dialog->close();
    });
    ServiceAgreement::check();
    return result;
}

const QVector<PictureState> States = {
    {"agreement", agreement},
    {"running", running},
    {"first-run", firstRun},
    {"failed-repair", [] { return failed(true, true); }},
    {"failed", [] { return failed(true, false); }},
    {"failed-commands", commands},
    {"failed-public", [] { return failed(false, false); }},
    {"without-bus", withoutBus},
    {"refused", refused},
    {"failed-retry", [] { return retry(false); }},
    {"failed-file", [] { return retry(true); }},
    {"confirm", confirm},
    {"running-programs", runningPrograms},
    {"logs", logs},
    {"env-running", [] { return environment("running"); }},
    {"env-logs", [] { return environment("logs"); }},
    {"env-done", [] { return environment("done"); }},
    {"env-failed", [] { return environment("failed"); }},
    {"env-retry", [] { return environment("retry"); }},
};

}  // namespace

int main(int argc, char** argv) {
    return takePicture(argc, argv, States);
}
