#include "bottleservice/jobs/DeleteUnusedJob.h"

#include <QDebug>
#include <QJsonArray>
#include <QJsonObject>
#include <algorithm>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/bottles/FoundPrograms.h"
#include "bottleservice/bottles/JsonText.h"
#include "bottleservice/components/BottleBackup.h"
#include "bottleservice/wine/AddedFiles.h"
#include "bottleservice/wine/Templates.h"

namespace {

constexpr int EndMs = 5000;  // for programs that are about to end

}  // namespace

/// What the worker has found.
struct DeleteUnusedJob::Findings {
    std::optional<bool> isInstalling;
    std::optional<bool> hasShortcuts;
    std::optional<bool> hasFiles;
    QString firstFile;
    QVector<QJsonObject> programs;  ///< to be entered when the bottle has none
};

DeleteUnusedJob::DeleteUnusedJob(const JobBottle& bottle, const QString& ignoredProgram, Tools tools,
                                 Reply reply)
    : Job(std::move(reply)), m_bottle(bottle), m_ignored(ignoredProgram), m_tools(std::move(tools)) {}

void DeleteUnusedJob::start() {
    const Answer check = m_bottle.check();
    if (!check.isGood()) {
        finish(check);
        return;
    }
    m_bottle.waitForPrograms(
        this, [this](const QStringList&) { inspect(); }, EndMs);
}

std::optional<QJsonObject> DeleteUnusedJob::otherPrograms() const {
    Answer failure;
    const auto settings = m_bottle.load(&failure);
    if (!settings)
        return std::nullopt;
    QJsonObject programs = settings->programs();
    programs.remove(m_ignored);
    return programs;
}

void DeleteUnusedJob::inspect() {
    Answer failure;
    const auto settings = m_bottle.load(&failure);
    const QString key = settings ? settings->templateKey() : QString();
    auto findings = std::make_shared<Findings>();
    const auto work = [findings, key, cancelled = m_cancelled,
                       hasPrograms = !otherPrograms().value_or(QJsonObject()).isEmpty(),
                       path = m_bottle.path(), original = m_bottle.templates()->pathOf(key),
                       script = m_tools.iconScript,
                       entersPrograms = bool(m_tools.enterPrograms)](const std::atomic_bool&) -> QString {
        findings->isInstalling = BottleBackup::state(path) != BottleBackup::State::None;
        const auto shortcuts = BottleScan::shortcuts(path, QDateTime::fromSecsSinceEpoch(0));
        const QSet<QString> made = AddedFiles::unchanged(path);
        findings->hasShortcuts = std::any_of(
            shortcuts.begin(), shortcuts.end(),
            [&made](const BottleScan::Shortcut& shortcut) { return !made.contains(shortcut.file); });
        const AddedFiles added = key.isEmpty() ? AddedFiles() : AddedFiles::of(path, original, *cancelled);
        if (added.isComplete || !added.first.isEmpty())
            findings->hasFiles = !added.first.isEmpty();
        findings->firstFile = added.first;
        if (hasPrograms || !entersPrograms)
            return {};
        const FoundPrograms found(path, script, *cancelled);
        findings->programs = found.ofShortcuts(shortcuts, {});
        if (findings->programs.isEmpty())
            findings->programs = found.ofExecutables(added.executables);
        return {};
    };
    m_bottle.templates()->run(this, work, [this, findings](const QString&) { conclude(*findings); });
}

void DeleteUnusedJob::conclude(const Findings& findings) {
    BottleUse use;
    const QStringList running = m_bottle.runningPrograms();
    use.isRunning = !running.isEmpty();
    use.isInstalling = findings.isInstalling;
    use.hasShortcuts = findings.hasShortcuts;
    use.hasFiles = findings.hasFiles;
    use.isShared = BottleName::isPublic(m_bottle.name());
    if (const auto programs = otherPrograms())
        use.hasPrograms = !programs->isEmpty();
    const QString reason = *m_cancelled ? "the service is ending" : use.reasonToKeep();
    if (reason.isEmpty() && !m_tools.makeDeletion) {
        finish(Answer::of(JsonText::compact(QJsonObject{{"deleted", false}, {"unused", true}})));
        return;
    }
    if (reason.isEmpty()) {
        deleteBottle();
        return;
    }
    qInfo() << "keeping bottle" << m_bottle.shownName() << ":" << reason << running << findings.firstFile;
    keep(reason, findings);
}

void DeleteUnusedJob::deleteBottle() {
    qInfo() << "nothing was installed in bottle" << m_bottle.shownName() << "; deleting it";
    auto result = std::make_shared<Answer>();
    m_deletion = m_tools.makeDeletion([result](const Answer& answer) { *result = answer; });
    connect(m_deletion.get(), &Job::finished, this, [this, result] {
        finish(result->isGood() ? Answer::of(JsonText::compact(QJsonObject{{"deleted", true}})) : *result);
    });
    m_deletion->start();
}

void DeleteUnusedJob::keep(const QString& reason, const Findings& findings) {
    if (!findings.programs.isEmpty() && m_tools.enterPrograms(findings.programs).isGood())
        BottleScan::clearUsersDesktop(m_bottle.path(), QDateTime::fromSecsSinceEpoch(0));
    const QStringList ids = otherPrograms().value_or(QJsonObject()).keys();
    finish(Answer::of(JsonText::compact(
        QJsonObject{{"deleted", false}, {"reason", reason}, {"programs", QJsonArray::fromStringList(ids)}})));
}
