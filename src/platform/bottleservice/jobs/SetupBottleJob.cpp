#include "bottleservice/jobs/SetupBottleJob.h"

#include <QDebug>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QStandardPaths>

#include "bottleservice/bottles/BottleScan.h"
#include "bottleservice/bottles/SetupManifest.h"
#include "bottleservice/components/BottleFiles.h"
#include "bottleservice/components/GraphicsLayer.h"
#include "bottleservice/components/InstallPlan.h"
#include "bottleservice/components/PrefixFiles.h"
#include "bottleservice/files/Background.h"
#include "bottleservice/files/FullDisk.h"
#include "bottleservice/jobs/SetupCommand.h"
#include "bottleservice/jobs/SetupDependency.h"
#include "bottleservice/jobs/SetupSettings.h"
#include "bottleservice/jobs/StagedBottle.h"
#include "bottleservice/wine/AddedFiles.h"
#include "bottleservice/wine/BottleStopper.h"
#include "bottleservice/wine/RegistryWriter.h"
#include "bottleservice/wine/Templates.h"
#include "bottleservice/wine/WineCommand.h"
#include "bottleservice/wine/WineEnvironment.h"

using Fault = Answer::Fault;
using Kind = SetupStep::Kind;

namespace {

constexpr int WineserverMs = 60000;

Reason filesFault(const QString& fault) {
    return fault.isEmpty() ? Reason() : Reason(Reason::FilesNotWritten, {fault});
}

}  // namespace

SetupBottleJob::SetupBottleJob(const JobBottle& bottle, const Manifest& manifest, const QByteArray& text,
                               const Runner& runner, Tools tools, Reply reply)
    : Job(std::move(reply)),
      m_bottle(bottle),
      m_manifest(manifest),
      m_text(text),
      m_runner(runner),
      m_tools(std::move(tools)),
      m_steps(SetupSteps::of(manifest)) {}

SetupBottleJob::~SetupBottleJob() {
    *m_cancelled = true;
}

void SetupBottleJob::start() {
    if (*m_cancelled) {
        fail(Reason::Cancelled);
        return;
    }
    switch (m_tools.store.state(m_bottle.name())) {
        case BottleStore::State::Missing:
            next();
            break;
        case BottleStore::State::Present:
            withExisting(m_tools.makeJudgement, "unused", [this] { next(); });
            break;
        case BottleStore::State::Foreign:
            fail(Reason(Reason::NoBottleThere, {m_bottle.shownName()}));
    }
}

void SetupBottleJob::cancel() {
    if (m_cancelled->exchange(true))
        return;
    if (m_existing)
        m_existing->cancel();
    if (m_staged)
        m_staged->cancel();
    if (m_dependency)
        m_dependency->cancel();
    if (m_writer)
        m_writer->cancel();
    if (m_command)
        m_command->cancel();
    if (m_waiting)
        m_waiting->kill();
}

/// Lets a job judge or delete the bottle that has the name already, and goes on when its answer has the key.
void SetupBottleJob::withExisting(const MakeJob& make, const QString& key, std::function<void()> then) {
    auto result = std::make_shared<Answer>();
    m_existing = make([result](const Answer& answer) { *result = answer; });
    // Queued: the job is still on the stack when it emits finished().
    connect(
        m_existing.get(), &Job::finished, this,
        [this, result, key, then = std::move(then)] {
            m_existing.reset();
            const QJsonObject verdict = QJsonDocument::fromJson(result->text.toUtf8()).object();
            if (verdict[key].toBool() || *m_cancelled)
                then();
            else
                fail(result->isGood()
                         ? Reason(Reason::BottleExists, {m_bottle.shownName(), verdict["reason"].toString()})
                         : result->reason);
        },
        Qt::QueuedConnection);
    m_existing->start();
}

void SetupBottleJob::next() {
    if (*m_cancelled) {
        fail(Reason::Cancelled);
        return;
    }
    const SetupStep step = m_steps[m_next];
    Q_EMIT stepStarted(m_next++, step.title);
    carryOut(step);
}

void SetupBottleJob::carryOut(const SetupStep& step) {
    switch (step.kind) {
        case Kind::Create:
            create();
            break;
        case Kind::Layers:
            installLayers();
            break;
        case Kind::Dependency:
            installDependency(step.index);
            break;
        case Kind::Settings:
            applySettings();
            break;
        case Kind::Files:
            writeFiles();
            break;
        case Kind::Command:
            run(m_manifest.bottle.commands[step.index]);
            break;
        case Kind::Finish:
            finishWine();
    }
}

void SetupBottleJob::stepEnded(const Reason& reason) {
    if (*m_cancelled || !reason.isEmpty())
        fail(*m_cancelled ? Reason(Reason::Cancelled) : reason);
    else
        QMetaObject::invokeMethod(this, &SetupBottleJob::next, Qt::QueuedConnection);
}

void SetupBottleJob::create() {
    m_begun = QDateTime::currentDateTime();
    m_staged = new StagedBottle(m_tools.store, m_bottle.name(), m_runner, m_bottle.templates(),
                                m_tools.reclaimer, this);
    connect(m_staged, &StagedBottle::finished, this, [this](const Reason& reason) {
        if (reason.isEmpty())
            m_settings.emplace(m_staged->freshSettings());
        stepEnded(reason.isEmpty() ? planDependencies() : reason);
    });
    m_staged->start();
}

/// All of them before the first one is fetched, so that a component that cannot be had is told at once.
Reason SetupBottleJob::planDependencies() {
    InstallPlan::Asked asked;
    asked.hasWinetricks = !QStandardPaths::findExecutable("winetricks").isEmpty();
    asked.target = RecipeTarget::of(m_staged->path(), m_runner.wine);
    for (const QString& dependency : qAsConst(m_manifest.bottle.dependencies)) {
        m_plans += QVector<Recipe>();
        if (asked.installed.contains(dependency))
            continue;
        asked.component = dependency;
        const InstallPlan plan = InstallPlan::make(asked, m_tools.recipes, m_tools.sources);
        if (!plan.refusal.isEmpty())
            return plan.refusal;
        for (const Recipe& recipe : plan.recipes)
            asked.installed += recipe.name;
        m_plans.last() = plan.recipes;
    }
    return {};
}

void SetupBottleJob::installLayers() {
    const struct {
        const char* key;
        const char* kind;
        QString version;
    } layers[] = {{"DXVK", "dxvk", m_manifest.bottle.dxvk}, {"VKD3D", "vkd3d", m_manifest.bottle.vkd3d}};
    QStringList files;
    for (const auto& layer : layers) {
        if (layer.version.isEmpty())
            continue;
        const QStringList dlls = GraphicsLayer::dllsOf(m_tools.components.pathOf(layer.kind, layer.version));
        if (dlls.isEmpty()) {
            stepEnded(Reason(Reason::NoDlls, {layer.version}));
            return;
        }
        for (const QString& dll : dlls)
            m_settings->setOverride(QFileInfo(dll).baseName(), "n");
        m_settings->set(layer.key, layer.version);
        files += dlls;
    }
    Background::run(
        this, [path = m_staged->path(), files] { return PrefixFiles::putSystemFiles(path, files, false); },
        [this](const QString& fault) { stepEnded(filesFault(fault)); });
}

void SetupBottleJob::installDependency(int index) {
    const QVector<Recipe> recipes = m_plans[index];
    if (recipes.isEmpty()) {
        stepEnded({});
        return;
    }
    m_dependency =
        new SetupDependency(m_runner, m_staged->path(), recipes, m_tools.sources, m_tools.downloads, this);
    connect(m_dependency, &SetupDependency::described, this, &SetupBottleJob::described);
    connect(m_dependency, &SetupDependency::progress, this, &SetupBottleJob::progress);
    connect(m_dependency, &SetupDependency::finished, this, [this, recipes](const Reason& reason) {
        QJsonArray installed = m_settings->record()["Installed_Dependencies"].toArray();
        for (const Recipe& recipe : recipes)
            installed += recipe.name;
        m_settings->set("Installed_Dependencies", installed);
        const QJsonObject overrides = m_dependency->overrides();
        for (auto it = overrides.begin(); it != overrides.end(); ++it)
            m_settings->setOverride(it.key(), it.value().toString());
        m_dependency->deleteLater();
        stepEnded(reason);
    });
    m_dependency->start();
}

void SetupBottleJob::applySettings() {
    QStringList warnings;
    const RegistryChange change =
        SetupSettings::apply(m_manifest, PrefixFiles::is64Bit(m_staged->path()), &*m_settings, &warnings);
    for (const QString& warning : qAsConst(warnings))
        Q_EMIT described(warning);
    if (change.isEmpty()) {
        stepEnded({});
        return;
    }
    m_writer = new RegistryWriter(m_runner, m_staged->path(), change, this);
    connect(m_writer, &RegistryWriter::finished, this, [this](const Reason& reason) {
        m_writer->deleteLater();
        stepEnded(reason);
    });
    m_writer->start();
}

void SetupBottleJob::writeFiles() {
    Background::run(
        this,
        [path = m_staged->path(), files = m_manifest.bottle.files, cancelled = m_cancelled] {
            return BottleFiles::write(path, files, *cancelled);
        },
        [this](const QString& fault) { stepEnded(filesFault(fault)); });
}

/// What a command has started may run on, so the drives stay away until the end.
void SetupBottleJob::run(const Manifest::Command& command) {
    Q_EMIT described(command.description.isEmpty() ? QString("Running %1").arg(command.program)
                                                   : command.description);
    m_drives.hide(m_staged->path());
    m_command = new SetupCommand(m_runner, m_staged->path(), m_settings->record(), command, this);
    connect(m_command, &SetupCommand::finished, this, [this](const Reason& reason) {
        m_command->deleteLater();
        stepEnded(reason);
    });
    m_command->start();
}

/// An installer's first process may end before its others; they get a minute to end by themselves.
void SetupBottleJob::finishWine() {
    const auto stop = [this] {
        stopProcesses([this](bool isClean) {
            if (isClean)
                recordFiles();
            else
                fail(Reason::ProgramsNotEnded);
        });
    };
    if (m_manifest.bottle.commands.isEmpty() && m_manifest.bottle.dependencies.isEmpty()) {
        stop();
        return;
    }
    m_waiting = new WineCommand(m_runner.wineserver, {"-w"},
                                WineEnvironment::forProcess({{"WINEPREFIX", m_staged->path()}}), this);
    connect(m_waiting, &WineCommand::finished, this, [this, stop](const QString& errorText) {
        m_waiting->deleteLater();
        if (!errorText.isEmpty())
            qInfo() << "something in" << m_bottle.shownName() << "goes on after its set-up:" << errorText;
        stop();
    });
    m_waiting->start(WineserverMs);
}

void SetupBottleJob::stopProcesses(std::function<void(bool)> then) {
    auto* stopper = new BottleStopper(m_staged->path(), m_runner.wineserver, this);
    stopper->setKind(Processes::Kind::Any);
    connect(stopper, &BottleStopper::finished, this, [stopper, then = std::move(then)](bool isClean) {
        stopper->deleteLater();
        then(isClean);
    });
    stopper->start();
}

/// So that a bottle into which nothing was installed after its set-up is known to hold nothing.
void SetupBottleJob::recordFiles() {
    m_bottle.templates()->run(
        this,
        [path = m_staged->path(), original = m_bottle.templates()->pathOf(m_settings->templateKey()),
         since = m_begun, cancelled = m_cancelled](const std::atomic_bool&) {
            BottleScan::clearUsersDesktop(path, since);
            return AddedFiles::record(path, original, *cancelled);
        },
        [this](const QString& fault) {
            if (!fault.isEmpty() && !*m_cancelled)
                qWarning() << "what is in" << m_bottle.shownName() << "will count as content:" << fault;
            takeName();
        });
}

void SetupBottleJob::takeName() {
    if (*m_cancelled || m_tools.store.state(m_bottle.name()) != BottleStore::State::Present) {
        place();
        return;
    }
    m_isReplacing = true;
    withExisting(m_tools.makeDeletion, "deleted", [this] { place(); });
}

void SetupBottleJob::place() {
    if (*m_cancelled) {
        fail(Reason::Cancelled);
        return;
    }
    m_settings->set("Application", m_manifest.name);  // which the names of its programs need not tell
    SetupSettings::enterPrograms(m_manifest, m_staged->path(), &*m_settings);
    Reason reason = filesFault(m_drives.putBack());
    if (reason.isEmpty())
        reason = filesFault(SetupManifest::save(m_staged->path(), m_text));
    if (reason.isEmpty())
        reason = m_staged->place(*m_settings);
    if (!reason.isEmpty()) {
        fail(reason);
        return;
    }
    qInfo() << "set up bottle" << m_bottle.shownName();
    finish(Answer::of());
}

void SetupBottleJob::fail(const Reason& cause) {
    if (std::exchange(m_isFailing, true))
        return;
    // Asked before removing files makes room again.
    const Reason reason = *m_cancelled ? cause : FullDisk::explain(m_tools.store.root(), cause);
    qWarning() << "bottle" << m_bottle.shownName() << "was not set up:" << reason.text();
    const auto conclude = [this, reason] {
        if (m_staged)
            m_staged->discard();
        finish(Answer::failure(Fault::Failed, reason));
    };
    if (!m_staged || m_staged->path().isEmpty()) {
        conclude();
        return;
    }
    stopProcesses([this, conclude](bool) {
        Background::run(
            this,
            [path = m_staged->path(), since = m_begun] {
                BottleScan::clearUsersDesktop(path, since);
                return true;
            },
            [conclude](bool) { conclude(); });
    });
}
