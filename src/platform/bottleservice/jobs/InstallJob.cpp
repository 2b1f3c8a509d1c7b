#include "bottleservice/jobs/InstallJob.h"

#include <QDebug>
#include <QUuid>

#include "bottleservice/components/BottleBackup.h"
#include "bottleservice/files/Background.h"
#include "bottleservice/files/FullDisk.h"
#include "bottleservice/jobs/RecoverInstallJob.h"
#include "bottleservice/wine/WineCommand.h"
#include "bottleservice/wine/WineEnvironment.h"

using Fault = Answer::Fault;

namespace {

constexpr int WineserverMs = 60000;

}  // namespace

InstallJob::InstallJob(const JobBottle& bottle, Reply reply)
    : Job(std::move(reply)), m_bottle(bottle), m_id(QUuid::createUuid().toString(QUuid::Id128)) {}

/// Restores first what an interrupted installation has left behind.
void InstallJob::start() {
    if (BottleBackup::state(m_bottle.path()) == BottleBackup::State::None) {
        begin();
        return;
    }
    auto* recovery = new RecoverInstallJob(m_bottle);
    recovery->setParent(this);
    connect(recovery, &Job::finished, this, &InstallJob::begin, Qt::QueuedConnection);
    recovery->start();
}

void InstallJob::begin() {
    Answer failure;
    const auto settings = m_bottle.load(&failure);
    if (!settings) {
        finish(failure);
        return;
    }
    if (*m_cancelled) {
        finish(Answer::failure(Fault::Failed, Reason::Cancelled));
        return;
    }
    m_runner = m_bottle.runnerOf(*settings);
    Reason refusal;
    if (BottleBackup::state(m_bottle.path()) != BottleBackup::State::None) {
        finish(Answer::failure(Fault::Failed, "An earlier installation could not be taken back yet."));
        return;
    }
    const Need need = prepare(*settings, m_runner, &refusal);
    if (!refusal.isEmpty() || need == Need::Nothing) {
        finish(refusal.isEmpty() ? Answer::of() : Answer::failure(Fault::Failed, refusal));
        return;
    }
    const QString fault = BottleBackup::announce(m_bottle.path());
    if (!fault.isEmpty()) {
        conclude(fault);  // nothing was changed, and what runs in the bottle stays untouched
        return;
    }
    // Launches wait from now on, so that no program can be missed.
    m_bottle.waitForPrograms(this, [this](const QStringList& running) { onProgramsKnown(running); });
}

void InstallJob::onProgramsKnown(const QStringList& running) {
    if (*m_cancelled) {
        conclude(Reason::Cancelled);
    } else if (!running.isEmpty()) {
        m_bottle.removeBackup();
        finish(Answer::busy(running));
    } else {
        Q_EMIT started();
        stopBottle([this] { backUp(); });
    }
}

void InstallJob::cancel() {
    *m_cancelled = true;
    if (m_working)
        abort();
    else if (m_wait)
        m_wait->kill();
}

void InstallJob::stopBottle(std::function<void()> then) {
    m_bottle.stopProcesses(this, m_runner.wineserver, [this, then = std::move(then)](bool clean) {
        if (clean)
            then();
        else
            rollBack(Reason::ProgramsNotEnded);
    });
}

void InstallJob::backUp() {
    Background::run(
        this,
        [path = m_bottle.path(), id = m_id, cancelled = m_cancelled] {
            return BottleBackup::make(path, id, *cancelled);
        },
        [this](const QString& fault) {
            if (!fault.isEmpty() || *m_cancelled) {
                rollBack(fault.isEmpty() ? Reason(Reason::Cancelled) : Reason(fault));
                return;
            }
            m_working = true;
            work();
        });
}

void InstallJob::worked(const Reason& reason) {
    m_working = false;
    if (!reason.isEmpty() || *m_cancelled)
        rollBack(reason.isEmpty() ? Reason(Reason::Cancelled) : reason);
    else
        waitForWineserver();
}

/// An installer's first process may end before its others; none may write any more when the job ends.
void InstallJob::waitForWineserver() {
    if (m_runner.wineserver.isEmpty()) {
        stopBottle([this] { complete(); });
        return;
    }
    m_wait = new WineCommand(m_runner.wineserver, {"-w"},
                             WineEnvironment::forProcess({{"WINEPREFIX", m_bottle.path()}}), this);
    connect(m_wait, &WineCommand::finished, this, [this](const QString& errorText) {
        m_wait->deleteLater();
        if (!errorText.isEmpty())
            qInfo() << "something in" << m_bottle.shownName()
                    << "goes on after an installation:" << errorText;
        stopBottle([this] { complete(); });
    });
    m_wait->start(WineserverMs);
}

void InstallJob::complete() {
    Answer failure;
    auto settings = m_bottle.load(&failure);
    Reason reason = failure.reason;
    if (settings && !*m_cancelled) {
        enter(&*settings);
        settings->set(RecoverInstallJob::LastInstall, m_id);
        QString error;
        m_bottle.save(*settings, &error);
        reason = error;
    }
    if (*m_cancelled && reason.isEmpty())
        reason = Reason::Cancelled;
    if (!reason.isEmpty()) {
        rollBack(reason);
        return;
    }
    conclude({});
}

void InstallJob::rollBack(const Reason& cause) {
    // Asked before removing files makes room again.
    const Reason reason = *m_cancelled ? cause : FullDisk::explain(m_bottle.path(), cause);
    qWarning() << "the installation into" << m_bottle.shownName() << "is taken back:" << reason.text();
    m_bottle.stopProcesses(this, m_runner.wineserver, [this, reason](bool clean) {
        // An unfinished backup means that nothing has been changed yet.
        const bool isWhole = BottleBackup::idOf(m_bottle.path()) == m_id;
        if (!clean && isWhole) {
            Reason told = reason;
            told += "The bottle is restored at the next start.";
            finish(Answer::failure(Fault::Failed, told));
            return;
        }
        Background::run(
            this,
            [path = m_bottle.path(), isWhole] { return isWhole ? BottleBackup::restore(path) : QString(); },
            [this, reason](const QString& fault) {
                if (!fault.isEmpty())
                    qCritical() << "bottle" << m_bottle.shownName() << "was not restored:" << fault;
                if (fault.isEmpty())
                    conclude(reason);
                else
                    finish(Answer::failure(Fault::Failed, reason));
            });
    });
}

void InstallJob::conclude(const Reason& reason) {
    m_bottle.removeBackup();
    finish(reason.isEmpty() ? Answer::of() : Answer::failure(Fault::Failed, reason));
}
