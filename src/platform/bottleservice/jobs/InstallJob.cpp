#include "bottleservice/jobs/InstallJob.h"

#include <QDebug>
#include <QUuid>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/components/BottleBackup.h"
#include "bottleservice/files/Background.h"
#include "bottleservice/files/FullDisk.h"
#include "bottleservice/requests/BottleEngine.h"
#include "bottleservice/wine/BottleStopper.h"
#include "bottleservice/wine/WineCommand.h"
#include "bottleservice/wine/WineEnvironment.h"

using Fault = Answer::Fault;

namespace {

constexpr int SettleMs = 60000;
const char LastInstall[] = "Last_Install";

void stop(QObject* context, BottleEngine* engine, const QString& bottle, const QString& wineserver,
          std::function<void(bool)> then) {
    // Launch scripts are not ended: those that live wait until the installation is over.
    auto* stopper = new BottleStopper(engine->store().pathOf(bottle), wineserver, context);
    QObject::connect(stopper, &BottleStopper::finished, context,
                     [stopper, then = std::move(then)](bool clean) {
                         stopper->deleteLater();
                         then(clean);
                     });
    stopper->start();
}

}  // namespace

InstallJob::InstallJob(BottleEngine* engine, const QString& bottle, Reply reply)
    : Job(std::move(reply)),
      m_engine(engine),
      m_bottle(bottle),
      m_id(QUuid::createUuid().toString(QUuid::Id128)) {}

QString InstallJob::bottlePath() const {
    return m_engine->store().pathOf(m_bottle);
}

/// What an earlier installation has left behind comes first.
void InstallJob::start() {
    if (BottleBackup::state(bottlePath()) == BottleBackup::State::None) {
        begin();
        return;
    }
    auto* recovery = new RecoverInstallJob(m_engine, m_bottle);
    recovery->setParent(this);
    connect(recovery, &Job::finished, this, &InstallJob::begin, Qt::QueuedConnection);
    recovery->start();
}

void InstallJob::begin() {
    Answer failure;
    const auto settings = m_engine->loaded(m_bottle, &failure);
    if (!settings) {
        finish(failure);
        return;
    }
    if (*m_cancelled) {
        finish(Answer::failure(Fault::Failed, Reason::Cancelled));
        return;
    }
    m_runner = m_engine->runnerOf(*settings);
    Reason refusal;
    if (BottleBackup::state(bottlePath()) != BottleBackup::State::None) {
        finish(Answer::failure(Fault::Failed, "An earlier installation could not be taken back yet."));
        return;
    }
    const Need need = prepare(*settings, m_runner, &refusal);
    if (!refusal.isEmpty() || need == Need::Nothing) {
        finish(refusal.isEmpty() ? Answer::of() : Answer::failure(Fault::Failed, refusal));
        return;
    }
    const QString fault = BottleBackup::announce(bottlePath());
    if (!fault.isEmpty()) {
        conclude(fault);  // nothing was begun, and what runs in the bottle is the user's
        return;
    }
    // Whatever starts from now on waits, so that this look cannot miss a program.
    m_engine->waitForPrograms(m_bottle, this, [this](const QStringList& running) { onLooked(running); });
}

void InstallJob::onLooked(const QStringList& running) {
    if (*m_cancelled) {
        conclude(Reason::Cancelled);
    } else if (!running.isEmpty()) {
        m_engine->removeBackup(m_bottle);
        finish(Answer::busy(running));
    } else {
        Q_EMIT started();
        stopBottle([this] { setAside(); });
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
    stop(this, m_engine, m_bottle, m_runner.wineserver, [this, then = std::move(then)](bool clean) {
        if (clean)
            then();
        else
            takeBack(Reason::ProgramsNotEnded);
    });
}

void InstallJob::setAside() {
    Background::run(
        this,
        [path = bottlePath(), id = m_id, cancelled = m_cancelled] {
            return BottleBackup::make(path, id, *cancelled);
        },
        [this](const QString& fault) {
            if (!fault.isEmpty() || *m_cancelled) {
                takeBack(fault.isEmpty() ? Reason(Reason::Cancelled) : Reason(fault));
                return;
            }
            m_working = true;
            work();
        });
}

void InstallJob::worked(const Reason& reason) {
    m_working = false;
    if (!reason.isEmpty() || *m_cancelled)
        takeBack(reason.isEmpty() ? Reason(Reason::Cancelled) : reason);
    else
        settle();
}

/// An installer's first process may end before its last one. Nobody may write any more when the job ends.
void InstallJob::settle() {
    if (m_runner.wineserver.isEmpty()) {
        stopBottle([this] { complete(); });
        return;
    }
    m_wait = new WineCommand(m_runner.wineserver, {"-w"},
                             WineEnvironment::forProcess({{"WINEPREFIX", bottlePath()}}), this);
    connect(m_wait, &WineCommand::finished, this, [this](const QString& sentence) {
        m_wait->deleteLater();
        if (!sentence.isEmpty())
            qInfo() << "something in" << BottleName::shown(m_bottle)
                    << "goes on after an installation:" << sentence;
        stopBottle([this] { complete(); });
    });
    m_wait->start(SettleMs);
}

void InstallJob::complete() {
    Answer failure;
    auto settings = m_engine->loaded(m_bottle, &failure);
    Reason reason = failure.reason;
    if (settings && !*m_cancelled) {
        enter(&*settings);
        settings->set(LastInstall, m_id);
        QString error;
        m_engine->saveSettings(m_bottle, *settings, &error);
        reason = error;
    }
    if (*m_cancelled && reason.isEmpty())
        reason = Reason::Cancelled;
    if (!reason.isEmpty()) {
        takeBack(reason);
        return;
    }
    conclude({});
}

void InstallJob::takeBack(const Reason& cause) {
    // Before the room is given free again.
    const Reason reason = *m_cancelled ? cause : FullDisk::explain(bottlePath(), cause);
    qWarning() << "the installation into" << BottleName::shown(m_bottle) << "is taken back:" << reason.text();
    stop(this, m_engine, m_bottle, m_runner.wineserver, [this, reason](bool clean) {
        // An unfinished backup means that nothing has been changed yet.
        const bool isWhole = BottleBackup::idOf(bottlePath()) == m_id;
        if (!clean && isWhole) {
            Reason told = reason;
            told += "The bottle is restored at the next start.";
            finish(Answer::failure(Fault::Failed, told));
            return;
        }
        Background::run(
            this,
            [path = bottlePath(), isWhole] { return isWhole ? BottleBackup::restore(path) : QString(); },
            [this, reason](const QString& fault) {
                if (!fault.isEmpty())
                    qCritical() << "bottle" << BottleName::shown(m_bottle) << "was not restored:" << fault;
                if (fault.isEmpty())
                    conclude(reason);
                else
                    finish(Answer::failure(Fault::Failed, reason));
            });
    });
}

void InstallJob::conclude(const Reason& reason) {
    m_engine->removeBackup(m_bottle);
    finish(reason.isEmpty() ? Answer::of() : Answer::failure(Fault::Failed, reason));
}

RecoverInstallJob::RecoverInstallJob(BottleEngine* engine, const QString& bottle)
    : Job([](const Answer&) {}), m_engine(engine), m_bottle(bottle) {}

void RecoverInstallJob::start() {
    Answer failure;
    const auto settings = m_engine->loaded(m_bottle, &failure);
    const QString path = m_engine->store().pathOf(m_bottle);
    if (!settings || BottleBackup::state(path) == BottleBackup::State::None) {
        finish(failure);
        return;
    }
    const bool isComplete =
        BottleBackup::state(path) == BottleBackup::State::Unfinished ||
        settings->record().value(QLatin1String(LastInstall)).toString() == BottleBackup::idOf(path);
    qWarning() << "an installation into" << BottleName::shown(m_bottle) << "was interrupted;"
               << (isComplete ? "nothing is to be restored" : "restoring what was there");
    if (isComplete)
        removeFiles({});
    else
        stop(this, m_engine, m_bottle, m_engine->runnerOf(*settings).wineserver, [this](bool clean) {
            if (clean)
                restore();
            else
                removeFiles("Programs in the bottle could not be ended.");
        });
}

void RecoverInstallJob::restore() {
    Background::run(
        this, [path = m_engine->store().pathOf(m_bottle)] { return BottleBackup::restore(path); },
        [this](const QString& sentence) { removeFiles(sentence); });
}

void RecoverInstallJob::removeFiles(const QString& sentence) {
    if (sentence.isEmpty())
        m_engine->removeBackup(m_bottle);
    else
        qCritical() << "bottle" << BottleName::shown(m_bottle) << "was not restored:" << sentence;
    finish(Answer::of());
}
