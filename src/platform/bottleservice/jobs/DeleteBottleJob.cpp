#include "bottleservice/jobs/DeleteBottleJob.h"

#include <QDebug>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/bottles/PackageOrigin.h"
#include "bottleservice/desktop/PackageIcons.h"
#include "bottleservice/files/Background.h"
#include "bottleservice/files/Reclaimer.h"
#include "bottleservice/files/WorkingDirectory.h"
#include "bottleservice/wine/BottleStopper.h"
#include "bottleservice/wine/LaunchRecords.h"

DeleteBottleJob::DeleteBottleJob(const BottleStore& store, const QString& name, const Runners& runners,
                                 Reclaimer* reclaimer, Reply reply)
    : Job(std::move(reply)), m_store(store), m_name(name), m_runners(runners), m_reclaimer(reclaimer) {}

void DeleteBottleJob::start() {
    const QString fault = m_store.check(m_name);
    if (!fault.isEmpty()) {
        finish(Answer::failure(Answer::Fault::NoSuchBottle, fault));
        return;
    }
    // Before the programs are ended, so that none is started between that and the move.
    Background::run(
        this,
        [path = m_store.pathOf(m_name)] {
            return PackageIcons::find(path, PackageOrigin::look(path).package);
        },
        [this](const QStringList& icons) {
            m_icons = icons;
            stopPrograms();
        });
}

void DeleteBottleJob::stopPrograms() {
    auto* stopper =
        new BottleStopper(m_store.pathOf(m_name), m_runners.wineserverFor(m_store.runnerOf(m_name)), this);
    stopper->setLaunchers([this] { return LaunchRecord::launchers(m_store.runningDir(), m_name); });
    connect(stopper, &BottleStopper::finished, this, &DeleteBottleJob::onStopped);
    stopper->start();
}

void DeleteBottleJob::onStopped(bool clean) {
    QString fault;
    const QString path = m_store.pathOf(m_name);
    const QString aside = WorkingDirectory::pathBeside(path, WorkingDirectory::DeletingPrefix);
    if (!clean)
        fault = QString("Programs of the bottle \"%1\" could not be ended; it was not deleted.")
                    .arg(BottleName::shown(m_name));
    else
        fault = WorkingDirectory::moveInto(path, aside);
    if (!fault.isEmpty()) {
        qWarning() << fault;
        finish(Answer::failure(Answer::Fault::Failed, fault));
        return;
    }
    qInfo() << "deleted bottle" << BottleName::shown(m_name) << "; removing" << aside;
    PackageIcons::remove(m_icons);
    m_reclaimer->remove(aside);
    finish(Answer::of());
}
