#include "core/ApplicationWindows.h"

#include <QPointer>

#include "backend/BottleRecord.h"
#include "backend/BottlesConfig.h"
#include "backend/InBackground.h"
#include "environment/BottleEnvScript.h"
#include "feedback/dialogs/FeedBackDialog.h"
#include "launch/LaunchWindows.h"
#include "packaging/AppConfigDialog.h"
#include "packaging/manifest/ExportYamlDialog.h"
#include "packaging/manifest/RememberedAnswers.h"
#include "shell/configuration/page/LaunchedConfigWindow.h"

namespace {

/// The check may take long; the set-up itself runs an event loop until its window is closed, which the user
/// may do before the script has ended.
void prepareProton(QObject* context, const std::function<void()>& then) {
    inBackground(
        context, [] { return protonInitScript().needsRun(); },
        [alive = QPointer<QObject>(context), then](bool needsRun) {
            if (needsRun)
                protonInitScript().start(true);
            if (alive)
                protonInitScript().whenEnded(alive, then);
        });
}

/// What the user has told about the program's origin when its manifest was exported.
void proposeDownloadUrl(FeedBackDialog* dialog, const ProgramRef& program) {
    BottlesConfig::instance()->watchBottle(
        program.bottle, dialog, [dialog, program](const BusResult& result) {
            inBackground(
                dialog,
                [path = BottleRecord::path(result.object())] {
                    return path.isEmpty() ? std::nullopt : RememberedAnswers::read(path);
                },
                [dialog, program](const std::optional<ManifestForm>& answers) {
                    if (answers && answers->programUuid == program.uuid)
                        dialog->setDownloadUrl(answers->downloadUrl);
                });
        });
}

/// No rating is asked for there.
int askForFeedback(const ProgramRef& program, const QString& appName, const QString& version, QWidget* over) {
    const QPointer<FeedBackDialog> dialog = new FeedBackDialog(program, over);
    dialog->setWindowModality(over ? Qt::WindowModal : Qt::ApplicationModal);
    dialog->setAppName(appName);
    dialog->setAppVersion(version);
    if (!program.uuid.isEmpty())
        proposeDownloadUrl(dialog, program);
    dialog->exec();
    delete dialog;  // it is gone already when its window went meanwhile
    return 0;
}

}  // namespace

void ApplicationWindows::setOpeners() {
    LaunchWindows& windows = LaunchWindows::instance();
    windows.prepareProton = &prepareProton;
    windows.configuration = &LaunchedConfigWindow::open;
    windows.feedback = &askForFeedback;
    windows.manifestExport = &ExportYamlDialog::openFor;
    windows.packaging = &AppConfigDialog::openFor;
}
