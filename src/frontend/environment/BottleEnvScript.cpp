#include "environment/BottleEnvScript.h"

#include <QDebug>
#include <QFileInfo>
#include <QProcess>
#include <memory>

#include "core/base/Paths.h"
#include "core/base/ToolProcess.h"
#include "environment/EnvInitBanner.h"
#include "widgets/LogLineReader.h"

namespace {

BottleEnvScript* made(const char* script, const QStringList& arguments, const QString& title,
                      const QString& completedTitle, const QString& completedMessage) {
    auto* record = new BottleEnvScript;
    record->scriptPath = Paths::shareDir() + "/package-scripts/" + script;
    record->arguments = arguments;
    record->title = title;
    record->completedTitle = completedTitle;
    record->completedMessage = completedMessage;
    return record;
}

}  // namespace

// Neither is ever deleted: that would kill the script.
BottleEnvScript& envInitScript() {
    static BottleEnvScript* const script =
        made("init-bottle-in-client.sh", {"-r", "--recreate"}, EnvInitBanner::tr("Initializing Environment"),
             EnvInitBanner::tr("Envrionment Initialization Completed"),
             EnvInitBanner::tr("You can now start using Cellarix"));
    return *script;
}

BottleEnvScript& protonInitScript() {
    static BottleEnvScript* const script =
        made("init-proton-in-client.sh", {}, EnvInitBanner::tr("Setup Proton"),
             EnvInitBanner::tr("Setup Proton Completed"),
             EnvInitBanner::tr("You can now start using proton to run games"));
    return *script;
}

bool BottleEnvScript::needsRun() const {
    if (!QFileInfo::exists(scriptPath))
        return false;
    const ToolProcess::Result result = ToolProcess::runQuietly(scriptPath, {"-c"});
    qInfo() << "init check return code: " << result.exitCode;
    if (result.state != ToolProcess::State::Exited)
        qWarning() << "the check gave no answer:" << scriptPath;
    return result.state == ToolProcess::State::Exited && result.exitCode != 0;
}

void BottleEnvScript::start(bool force) {
    if (!force && !needsRun())
        return;
    const bool isShown = banner && banner->isVisible();
    if (!banner) {
        banner = new EnvInitBanner;
        QObject::connect(banner, &EnvInitBanner::retryRequested, banner, [this] {
            if (!running)
                launch();
        });
        launch();
        banner->moveToCenter();
    }
    banner->raise();
    banner->activateWindow();
    if (isShown)
        return;
    banner->exec();
    if (!running)
        delete banner;
}

void BottleEnvScript::whenEnded(QObject* context, const std::function<void()>& then) {
    const auto call = [alive = QPointer<QObject>(context), then] {
        if (alive)
            then();
    };
    if (running)
        waiting += call;
    else
        call();
}

void BottleEnvScript::launch() {
    banner->showRunning(title);
    process = new QProcess;
    auto standardOutput = std::make_shared<LogLineReader>();
    auto standardError = std::make_shared<LogLineReader>();
    const auto readOutput = [this, standardOutput] {
        show(standardOutput->add(process->readAllStandardOutput()));
    };
    const auto readError = [this, standardError] {
        show(standardError->add(process->readAllStandardError()));
    };
    QObject::connect(process, &QProcess::readyReadStandardOutput, process, readOutput, Qt::QueuedConnection);
    QObject::connect(process, &QProcess::readyReadStandardError, process, readError, Qt::QueuedConnection);
    QObject::connect(
        process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), process,
        [=](int code, QProcess::ExitStatus status) {
            readOutput();
            readError();
            show(standardOutput->rest() + standardError->rest());
            qInfo() << "ended with" << code << scriptPath;
            end(true);
            if (banner && (code != 0 || status != QProcess::NormalExit))
                banner->offerRetry(EnvInitBanner::tr("Not all of it succeeded (exit code %1)").arg(code));
        },
        Qt::QueuedConnection);
    QObject::connect(
        process, &QProcess::errorOccurred, process,
        [this](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart)
                end(false);
        },
        Qt::QueuedConnection);
    running = true;
    qInfo() << "running" << scriptPath << arguments;
    process->start(scriptPath, arguments, QIODevice::ReadWrite);
    process
        ->closeWriteChannel();  // a script that reads an answer sees the end of its input and does not wait
}

void BottleEnvScript::show(const QStringList& lines) const {
    if (banner)
        banner->appendLines(lines);
}

void BottleEnvScript::end(bool started) {
    running = false;
    if (!started) {
        qWarning() << "cannot run" << scriptPath << process->errorString();
        show({scriptPath, process->errorString()});
    }
    if (banner && started)
        banner->showCompleted(completedTitle, completedMessage);
    if (banner && !started) {
        banner->showNotStarted(EnvInitBanner::tr("The setup did not start"),
                               EnvInitBanner::tr("%1 cannot be run. Please install Cellarix again.")
                                   .arg(QFileInfo(scriptPath).fileName()));
        banner->offerRetry();
    }
    process->deleteLater();
    process = nullptr;
    for (const auto& call : std::exchange(waiting, {}))
        call();
}
