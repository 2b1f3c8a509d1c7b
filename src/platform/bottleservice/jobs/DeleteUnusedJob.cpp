#include "bottleservice/jobs/DeleteUnusedJob.h"

#include <QDebug>
#include <QJsonArray>
#include <QJsonObject>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/bottles/FoundPrograms.h"
#include "bottleservice/bottles/JsonText.h"
#include "bottleservice/components/BottleBackup.h"
#include "bottleservice/requests/BottleEngine.h"
#include "bottleservice/requests/ProgramRequests.h"
#include "bottleservice/wine/AddedFiles.h"

namespace {

constexpr int EndMs = 5000;  // longer than it takes to end everything in a bottle

}  // namespace

/// What the worker sees.
struct DeleteUnusedJob::Finding {
    std::optional<bool> isInstalling;
    std::optional<bool> hasShortcuts;
    std::optional<bool> hasFiles;
    QString firstFile;
    QVector<QJsonObject> programs;  ///< to be entered when the bottle has none
};

DeleteUnusedJob::DeleteUnusedJob(BottleEngine* engine, ProgramRequests* programs, const QString& bottle,
                                 const QString& ignoredProgram, Reply reply)
    : Job(std::move(reply)),
      m_engine(engine),
      m_programs(programs),
      m_bottle(bottle),
      m_ignored(ignoredProgram) {}

void DeleteUnusedJob::start() {
    const Answer check = m_engine->checked(m_bottle);
    if (!check.isGood()) {
        finish(check);
        return;
    }
    m_engine->waitForPrograms(
        m_bottle, this, [this](const QStringList&) { look(); }, EndMs);
}

void DeleteUnusedJob::look() {
    Answer failure;
    const auto settings = m_engine->loaded(m_bottle, &failure);
    const QString key = settings ? settings->templateKey() : QString();
    QJsonObject programs =
        settings ? settings->record().value("External_Programs").toObject() : QJsonObject();
    programs.remove(m_ignored);
    auto finding = std::make_shared<Finding>();
    const auto work = [finding, key, cancelled = m_cancelled, hasPrograms = !programs.isEmpty(),
                       path = m_engine->store().pathOf(m_bottle),
                       original = m_engine->templates()->pathOf(key),
                       script = m_programs->iconScript()](const std::atomic_bool&) -> QString {
        finding->isInstalling = BottleBackup::state(path) != BottleBackup::State::None;
        const auto shortcuts = BottleScan::shortcuts(path, QDateTime::fromSecsSinceEpoch(0));
        finding->hasShortcuts = !shortcuts.isEmpty();
        const AddedFiles added = key.isEmpty() ? AddedFiles() : AddedFiles::of(path, original, *cancelled);
        if (added.isComplete || !added.first.isEmpty())
            finding->hasFiles = !added.first.isEmpty();
        finding->firstFile = added.first;
        if (hasPrograms)
            return {};
        const FoundPrograms found(path, script, *cancelled);
        finding->programs = found.ofShortcuts(shortcuts, {});
        if (finding->programs.isEmpty())
            finding->programs = found.ofExecutables(added.executables);
        return {};
    };
    m_engine->templates()->run(this, work, [this, finding](const QString&) { conclude(*finding); });
}

void DeleteUnusedJob::conclude(const Finding& finding) {
    Answer failure;
    const auto settings = m_engine->loaded(m_bottle, &failure);
    BottleUse use;
    const QStringList running = m_engine->runningPrograms(m_bottle);
    use.isRunning = !running.isEmpty();
    use.isInstalling = finding.isInstalling;
    use.hasShortcuts = finding.hasShortcuts;
    use.hasFiles = finding.hasFiles;
    use.isShared = BottleName::isPublic(m_bottle);
    if (settings) {
        QJsonObject programs = settings->record().value("External_Programs").toObject();
        programs.remove(m_ignored);
        use.hasPrograms = !programs.isEmpty();
    }
    const QString reason = *m_cancelled ? "the service is ending" : use.reasonToKeep();
    if (reason.isEmpty()) {
        deleteBottle();
        return;
    }
    qInfo() << "keeping bottle" << BottleName::shown(m_bottle) << ":" << reason << running
            << finding.firstFile;
    keep(reason, finding);
}

void DeleteUnusedJob::deleteBottle() {
    qInfo() << "nothing was installed in bottle" << BottleName::shown(m_bottle) << "; deleting it";
    auto result = std::make_shared<Answer>();
    m_deletion = m_engine->deletionOf(m_bottle, [result](const Answer& answer) { *result = answer; });
    connect(m_deletion.get(), &Job::finished, this, [this, result] {
        finish(result->isGood() ? Answer::of(JsonText::compact(QJsonObject{{"deleted", true}})) : *result);
    });
    m_deletion->start();
}

void DeleteUnusedJob::keep(const QString& reason, const Finding& finding) {
    const QString path = m_engine->store().pathOf(m_bottle);
    if (!finding.programs.isEmpty() && m_programs->enter(m_bottle, finding.programs).isGood())
        BottleScan::clearUsersDesktop(path, QDateTime::fromSecsSinceEpoch(0));
    Answer failure;
    const auto settings = m_engine->loaded(m_bottle, &failure);
    QJsonObject programs =
        settings ? settings->record().value("External_Programs").toObject() : QJsonObject();
    programs.remove(m_ignored);
    finish(Answer::of(JsonText::compact(QJsonObject{
        {"deleted", false}, {"reason", reason}, {"programs", QJsonArray::fromStringList(programs.keys())}})));
}
