#include "bottleservice/jobs/RecoverInstallJob.h"

#include <QDebug>

#include "bottleservice/components/BottleBackup.h"
#include "bottleservice/files/Background.h"

const char RecoverInstallJob::LastInstall[] = "Last_Install";

RecoverInstallJob::RecoverInstallJob(const JobBottle& bottle) : Job([](const Answer&) {}), m_bottle(bottle) {}

void RecoverInstallJob::start() {
    Answer failure;
    const auto settings = m_bottle.load(&failure);
    const QString path = m_bottle.path();
    if (!settings || BottleBackup::state(path) == BottleBackup::State::None) {
        finish(failure);
        return;
    }
    const bool isComplete =
        BottleBackup::state(path) == BottleBackup::State::Unfinished ||
        settings->record().value(QLatin1String(LastInstall)).toString() == BottleBackup::idOf(path);
    qWarning() << "an installation into" << m_bottle.shownName() << "was interrupted;"
               << (isComplete ? "nothing is to be restored" : "restoring what was there");
    if (isComplete)
        removeFiles({});
    else
        m_bottle.stopProcesses(this, m_bottle.runnerOf(*settings).wineserver, [this](bool clean) {
            if (clean)
                restore();
            else
                removeFiles("Programs in the bottle could not be ended.");
        });
}

void RecoverInstallJob::restore() {
    Background::run(
        this, [path = m_bottle.path()] { return BottleBackup::restore(path); },
        [this](const QString& errorText) { removeFiles(errorText); });
}

void RecoverInstallJob::removeFiles(const QString& errorText) {
    if (errorText.isEmpty())
        m_bottle.removeBackup();
    else
        qCritical() << "bottle" << m_bottle.shownName() << "was not restored:" << errorText;
    finish(Answer::of());
}
