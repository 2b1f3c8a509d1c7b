#include "bottleservice/jobs/StopBottleJob.h"

#include "bottleservice/wine/BottleStopper.h"
#include "bottleservice/wine/LaunchRecords.h"

StopBottleJob::StopBottleJob(const BottleStore& store, const QString& name, const Runners& runners,
                             Reply reply)
    : Job(std::move(reply)), m_store(store), m_name(name), m_runners(runners) {}

void StopBottleJob::start() {
    const QString missing = m_store.check(m_name);
    if (!missing.isEmpty()) {
        finish(Answer::failure(Answer::Fault::NoSuchBottle, missing));
        return;
    }
    auto* stopper =
        new BottleStopper(m_store.pathOf(m_name), m_runners.wineserverFor(m_store.runnerOf(m_name)), this);
    stopper->setLaunchers([this] { return LaunchRecord::launchers(m_store.runningDir(), m_name); });
    connect(stopper, &BottleStopper::finished, this, [this](bool clean) {
        finish(clean ? Answer::of() : Answer::failure(Answer::Fault::Failed, Reason::ProgramsNotEnded));
    });
    stopper->start();
}
