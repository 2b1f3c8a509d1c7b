#include "core/RunningLaunches.h"

#include <QCoreApplication>
#include <QDebug>

#include "core/Refusals.h"
#include "fenk/window/Application.h"
#include "fenk/window/Dialog.h"
#include "launch/bottle/PrivateBottleName.h"
#include "launch/run/ExeFileRunner.h"

RunningLaunches::RunningLaunches(Fenk::Application* application, Refusals* refusals)
    : QObject(application), m_application(application), m_refusals(refusals) {}

void RunningLaunches::clear() {
    qDeleteAll(m_runners);
    m_runners.clear();
}

void RunningLaunches::openFile(const QString& path, bool debug) {
    // Without that window a launch tells in its banner that there is no bus.
    if (m_refusals->refusesFile(path) || (debug && m_refusals->refusesWithoutBus()))
        return;
    // The key takes the time to read the file.
    const QString own = isEmpty() ? QString() : privateBottleNameOf(path);
    if (m_opening.contains(own))
        return;
    if (const ExeFileRunner* running = m_runners.value(own)) {
        showAlreadyRunning(running->displayName());
        return;
    }
    const QPointer<ExeFileRunner> runner(new ExeFileRunner(path, this));
    // Of the files that share a public bottle one at a time.
    const auto isFree = [this](const QString& bottle) {
        if (const ExeFileRunner* running = m_runners.value(bottle))
            showAlreadyRunning(running->displayName());
        return !contains(bottle);
    };
    if ((debug ? runner->runInBottlesConfigWindow() : runner->run(isFree)) == 0) {
        add(runner);
        return;
    }
    if (runner)
        runner->deleteLater();
}

int RunningLaunches::openProgram(const QString& bottle, const QString& uuid) {
    if (m_opening.contains(bottle))
        return 0;
    if (ExeFileRunner* running = m_runners.value(bottle)) {
        showAlreadyRunning(running->displayName());
        return 0;
    }
    if (m_refusals->refusesStoredProgram())
        return 1;
    // The service is asked meanwhile, and the same may be asked for once more.
    m_opening.insert(bottle);
    const QPointer<ExeFileRunner> runner(new ExeFileRunner(bottle, uuid, this));
    const QPointer<RunningLaunches> alive(this);
    const int result = runner->runProgram();
    if (!alive)
        return result;
    m_opening.remove(bottle);
    if (!runner)
        return result;
    if (result == 0) {
        add(runner);
    } else {
        runner->deleteLater();
        Q_EMIT ended();
    }
    return result;
}

int RunningLaunches::repairProgram(const QString& bottle, const QString& uuid,
                                   const QStringList& components) {
    if (components.isEmpty() || contains(bottle))
        return openProgram(bottle, uuid);
    if (m_refusals->refusesStoredProgram())
        return 1;
    const QPointer<ExeFileRunner> runner(new ExeFileRunner(bottle, uuid, this));
    add(runner);
    m_opening.insert(bottle);
    const QPointer<RunningLaunches> alive(this);
    const int result = runner->fixup(bottle, uuid, components);
    if (!alive)
        return result;
    m_opening.remove(bottle);
    if (result != 0 && runner)
        runner->deleteLater();
    return result;
}

void RunningLaunches::showAlreadyRunning(const QString& displayName) {
    QPointer<Fenk::Dialog>& dialog = m_runningDialogs[displayName];
    if (!dialog) {
        dialog = new Fenk::Dialog;
        dialog->setObjectName("already_running_dialog");
        dialog->setWindowTitle(m_application->productName());
        dialog->setMessage(
            QCoreApplication::translate("CellarixApplication", "%1 is running.").arg(displayName));
        dialog->addButton(QCoreApplication::translate("CellarixApplication", "OK"));
    }
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
}

void RunningLaunches::add(ExeFileRunner* runner) {
    const QString bottle = runner->id();
    if (bottle.isEmpty())
        qFatal("runner id is null");
    m_hasLaunched = true;
    m_runners.insert(bottle, runner);
    qInfo().noquote() << "add exe runner:" << bottle;
    connect(runner, &ExeFileRunner::emit_finished, this, [this, runner] { onRunnerFinished(runner); });
}

void RunningLaunches::onRunnerFinished(ExeFileRunner* runner) {
    for (const QString& bottle : m_runners.keys(runner)) {
        m_runners.remove(bottle);
        qInfo().noquote() << "remove exe runner:" << bottle;
    }
    Q_EMIT ended();
}

void RunningLaunches::endDeleted(const QString& bottle) {
    ExeFileRunner* runner = m_runners.value(bottle);
    if (!runner)
        return;
    qInfo().noquote() << "quit runner " << bottle << " because of deleting bottle";
    runner->finish(false);
    m_runners.remove(bottle);
}
