#include "bottleservice/jobs/ExportBottleJob.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>

#include "bottleservice/backup/BackupWriter.h"
#include "bottleservice/backup/BottleSurvey.h"
#include "bottleservice/backup/RestoredPrefix.h"
#include "bottleservice/backup/UnfinishedBackups.h"
#include "bottleservice/bottles/JsonText.h"
#include "bottleservice/components/BottleBackup.h"
#include "bottleservice/files/Background.h"
#include "bottleservice/wine/SlimPrefix.h"
#include "bottleservice/wine/Templates.h"
#include "bottleservice/wine/WineBuild.h"
#include "bottleservice/wine/WineCommand.h"
#include "bottleservice/wine/WineEnvironment.h"

using Fault = Answer::Fault;

namespace {

constexpr int WineserverMs = 20000;

QStringList programNames(const QJsonObject& programs) {
    QStringList names;
    for (const QJsonValue& program : programs)
        names += program.toObject()["name"].toString();
    names.sort();
    return names;
}

}  // namespace

ExportBottleJob::ExportBottleJob(const JobBottle& bottle, const QString& target, Tools tools, Reply reply)
    : Job(std::move(reply)), m_bottle(bottle), m_target(target), m_tools(std::move(tools)) {}

void ExportBottleJob::start() {
    Answer failure;
    const auto settings = m_bottle.load(&failure);
    if (!settings) {
        finish(failure);
        return;
    }
    const QString directory = QFileInfo(QFileInfo(m_target).path()).canonicalFilePath();
    if ((directory + '/').startsWith(QFileInfo(m_bottle.path()).canonicalFilePath() + '/')) {
        conclude(Reason(Reason::TargetInBottle, {m_target}));
        return;
    }
    if (BottleBackup::state(m_bottle.path()) != BottleBackup::State::None) {
        conclude("An earlier installation could not be taken back yet.");
        return;
    }
    m_bottle.waitForPrograms(this, [this, runner = m_bottle.runnerOf(*settings)](const QStringList& running) {
        if (running.isEmpty())
            waitForWine(runner);
        else
            finish(Answer::busy(running));
    });
}

void ExportBottleJob::cancel() {
    m_tools.progress->cancelled = true;
    if (m_wait)
        m_wait->kill();  // the one that waits, not the server
}

/// A wineserver writes the registry when it ends, which it does some seconds after the last program. Nothing
/// is ended here, since a program may be started at any moment.
void ExportBottleJob::waitForWine(const Runner& runner) {
    if (runner.wineserver.isEmpty()) {
        survey();
        return;
    }
    auto* wait = new WineCommand(runner.wineserver, {"-w"},
                                 WineEnvironment::forProcess({{"WINEPREFIX", m_bottle.path()}}), this);
    connect(wait, &WineCommand::finished, this, [this, wait] {
        wait->deleteLater();
        const QStringList running = m_bottle.runningPrograms();
        if (m_tools.progress->cancelled)
            conclude(Reason::Cancelled);
        else if (!running.isEmpty())
            finish(Answer::busy(running));
        else if (wait->hasTimedOut())
            conclude(Reason::WineBusy);
        else
            survey();
    });
    m_wait = wait;
    wait->start(WineserverMs);
}

void ExportBottleJob::survey() {
    Answer failure;
    const auto settings = m_bottle.load(&failure);
    if (!settings) {
        finish(failure);
        return;
    }
    const Runner runner = m_bottle.runnerOf(*settings);
    const QString key = settings->templateKey();
    m_templatePath = key.isEmpty() ? QString() : m_bottle.templates()->pathOf(key);
    if (!QFileInfo(m_templatePath + "/drive_c/windows").isDir())
        m_templatePath.clear();
    QStringList directories = runner.wine.isEmpty() ? QStringList() : SlimPrefix::peDirectories(runner.wine);
    for (const char* components : {"/dxvk", "/vkd3d", "/runners"})
        directories += m_tools.dataDir + components;
    m_survey = std::make_shared<BottleSurvey>(
        BottleSurvey::Place{m_bottle.path(), m_templatePath, directories, !key.isEmpty()});
    BackupList& list = m_survey->list;
    list.name = m_bottle.name();
    list.runner = runner.name;
    list.home = QDir::homePath();
    list.path = m_bottle.path();
    list.created = QDateTime::currentDateTimeUtc();
    list.programs = programNames(settings->programs());
    auto reason = std::make_shared<Reason>();  // the worker's answer is text only
    m_bottle.templates()->run(
        this,
        [survey = m_survey, reason, wine = runner.wine, original = m_templatePath, key,
         isCurrent = key == Templates::keyOf(runner), progress = m_tools.progress](const std::atomic_bool&) {
            *reason = survey->take(progress->cancelled);
            if (!key.isEmpty()) {
                // What the bottle was made from may be gone, or be older than the installed Wine.
                const QString build =
                    isCurrent && !original.isEmpty() ? WineBuild::checksum(wine) : QString();
                survey->list.build = build.isEmpty() ? QString(BackupList::UnknownBuild) : build;
            }
            survey->list.user = RestoredPrefix::userOf(survey->list.path, RestoredPrefix::userOf(original));
            progress->total = survey->list.bytes();
            return reason->text();
        },
        [this, reason](const QString& fault) {
            if (m_tools.progress->cancelled)
                conclude(Reason::Cancelled);
            else if (!fault.isEmpty())
                conclude(reason->isEmpty() ? Reason(fault) : *reason);
            else
                write();
        });
}

void ExportBottleJob::write() {
    const Reason refusal = BackupWriter::check(m_target, m_survey->list.writtenBytes());
    QString fault;
    if (refusal.isEmpty())
        m_note = UnfinishedBackups::note(m_tools.dataDir, BackupWriter::temporaryPathOf(m_target), &fault);
    if (!refusal.isEmpty() || !fault.isEmpty()) {
        conclude(refusal.isEmpty() ? Reason(Reason::FilesNotWritten, {fault}) : refusal);
        return;
    }
    Background::run(
        m_tools.worker, this,
        [survey = m_survey, target = m_target, bottle = m_bottle.path(), original = m_templatePath,
         progress = m_tools.progress]() -> Reason {
            BackupWriter writer(target);
            Reason reason = writer.write(survey->list, bottle, original, progress.get());
            if (reason.isEmpty() && !survey->isUnchanged())
                reason = Reason::BottleChanged;
            if (reason.isEmpty() && progress->cancelled)
                reason = Reason::Cancelled;
            return reason.isEmpty() ? writer.place() : reason;
        },
        [this](const Reason& reason) { conclude(reason); });
}

void ExportBottleJob::conclude(const Reason& reason) {
    UnfinishedBackups::forget(m_note);
    if (!reason.isEmpty()) {
        finish(Answer::failure(Fault::Failed, reason));
        return;
    }
    const QFileInfo file(m_target);
    const QStringList leftOut = m_survey->list.leftOut;
    qInfo() << "backed up bottle" << m_bottle.shownName() << "to" << m_target << file.size()
            << "bytes; left out:" << leftOut;
    finish(Answer::of(JsonText::compact(QJsonObject{{"ok", true},
                                                    {"path", m_target},
                                                    {"bytes", file.size()},
                                                    {"leftOut", QJsonArray::fromStringList(leftOut)}})));
}
