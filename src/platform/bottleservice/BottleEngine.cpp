#include "bottleservice/BottleEngine.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QStandardPaths>
#include <QSysInfo>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/bottles/LaunchData.h"
#include "bottleservice/bottles/Programs.h"
#include "bottleservice/bottles/PublicBottles.h"
#include "bottleservice/jobs/CreateBottleJob.h"
#include "bottleservice/jobs/DeleteBottleJob.h"
#include "bottleservice/jobs/StopJobs.h"
#include "bottleservice/jobs/WorkingDirectory.h"
#include "bottleservice/wine/BottleStopper.h"
#include "bottleservice/wine/DetachedCommand.h"
#include "bottleservice/wine/Emulators.h"
#include "bottleservice/wine/WindowsCommandLine.h"
#include "bottleservice/wine/WineCommand.h"
#include "bottleservice/wine/WineEnvironment.h"

using Fault = Answer::Fault;

namespace {

constexpr int VersionTimeoutMs = 10000;
constexpr int MaximumCommandCharacters = 32767;  // what Windows takes
constexpr int MaximumIdCharacters = 128;

QString compact(const QJsonObject& object) {
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

QString compact(const QJsonArray& array) {
    return QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Compact));
}

Answer noProgram(const QString& bottle, const QString& id) {
    return Answer::failure(Fault::NoSuchProgram, QString("The bottle \"%1\" has no program \"%2\".")
                                                     .arg(BottleName::shown(bottle), BottleName::shown(id)));
}

}  // namespace

BottleEngine::BottleEngine(const QString& dataDir, QObject* parent)
    : QObject(parent), m_dataDir(dataDir), m_store(dataDir), m_runners(dataDir) {
    if (!QDir().mkpath(m_store.root()))
        qWarning() << "cannot make" << m_store.root();
    connect(&m_queue, &JobQueue::idle, this, [this] {
        if (m_closing)
            Q_EMIT closed();
    });
}

BottleEngine::~BottleEngine() = default;

void BottleEngine::recover() {
    for (const QString& path : WorkingDirectory::leftovers(m_store.root())) {
        qWarning() << "an earlier run of the service was interrupted; removing what it left:" << path;
        auto* stopper = new BottleStopper(path, m_runners.wineserverFor({}), this);
        connect(stopper, &BottleStopper::finished, this, [this, stopper, path] {
            m_reclaimer.remove(path);
            stopper->deleteLater();
        });
        stopper->start();
    }
}

std::optional<BottleYaml> BottleEngine::loaded(const QString& bottle, Answer* failure) const {
    *failure = checked(bottle);
    if (!failure->isGood())
        return std::nullopt;
    QString error;
    auto settings = m_store.load(bottle, &error);
    if (!settings)
        *failure = Answer::failure(Fault::Failed, error);
    return settings;
}

Answer BottleEngine::checked(const QString& bottle) const {
    const QString invalid = BottleName::check(bottle);
    if (!invalid.isEmpty())
        return Answer::failure(Fault::InvalidArgs, invalid);
    const QString missing = m_store.check(bottle);
    return missing.isEmpty() ? Answer::of() : Answer::failure(Fault::NoSuchBottle, missing);
}

Answer BottleEngine::list() const {
    return Answer::of(compact(QJsonArray::fromStringList(m_store.names())));
}

Answer BottleEngine::get(const QString& bottle) const {
    Answer failure;
    const auto settings = loaded(bottle, &failure);
    if (!settings)
        return failure;
    const QString path = m_store.pathOf(bottle);
    if (LaunchData::isStale(path))
        writeLaunchData(bottle, *settings);
    QJsonObject record = settings->record();
    record.insert("Path", path);
    return Answer::of(compact(record));
}

Answer BottleEngine::listAllPrograms() const {
    QJsonArray summaries;
    for (const QString& bottle : m_store.names()) {
        QString error;
        const auto settings = m_store.load(bottle, &error);
        if (!settings) {
            qWarning() << error;
            continue;
        }
        const QJsonObject programs = settings->record().value("External_Programs").toObject();
        for (const QJsonValue& program : programs)
            summaries.append(Programs::summary(bottle, m_store.pathOf(bottle), program.toObject()));
    }
    return Answer::of(compact(summaries));
}

Answer BottleEngine::listBottlesAllPrograms(const QString& bottle) const {
    Answer failure;
    const auto settings = loaded(bottle, &failure);
    if (!settings)
        return failure;
    QJsonArray programs;
    for (const QJsonValue& program : settings->record().value("External_Programs").toObject())
        programs.append(program);
    return Answer::of(compact(programs));
}

Answer BottleEngine::getEmulators(const QString& bottle) const {
    Answer failure;
    const auto settings = loaded(bottle, &failure);
    if (!settings)
        return failure;
    const QString chosen = settings->record().value("Emulator").toString();
    return Answer::of(
        compact(Emulators::describe(QSysInfo::currentCpuArchitecture(), chosen, [](const QString& name) {
            return QStandardPaths::findExecutable(name);
        })));
}

Answer BottleEngine::checkPublicBottles(const QString& queryJson) const {
    const QJsonDocument query = QJsonDocument::fromJson(queryJson.toUtf8());
    if (!query.isObject())
        return Answer::failure(Fault::InvalidArgs, "The description of the file is no JSON object.");
    return Answer::of(PublicBottles::load(m_dataDir + "/public-bottles.json").bottleFor(query.object()));
}

void BottleEngine::getRunnerVersion(const QString& name, const Reply& reply) {
    const auto runner = m_runners.find(name);
    if (!runner) {
        reply(Answer::failure(
            Fault::InvalidArgs,
            QString("The Wine runner \"%1\" is not installed.").arg(BottleName::shown(name))));
        return;
    }
    const QFileInfo wine(runner->wine);
    const QString key = QString("%1 %2 %3")
                            .arg(wine.canonicalFilePath())
                            .arg(wine.size())
                            .arg(wine.lastModified().toMSecsSinceEpoch());
    if (m_versions.contains(key)) {
        reply(Answer::of(m_versions.value(key)));
        return;
    }
    auto* command = new WineCommand(runner->wine, {"--version"}, WineEnvironment::forProcess({}), this);
    connect(command, &WineCommand::finished, this, [this, command, key, reply](const QString& fault) {
        const QString version = Runners::parseVersion(command->output());
        command->deleteLater();
        if (fault.isEmpty())
            m_versions.insert(key, version);
        reply(fault.isEmpty() ? Answer::of(version) : Answer::failure(Fault::Failed, fault));
    });
    command->start(VersionTimeoutMs);
}

void BottleEngine::createBottles(const QString& bottle, const QString& runner, const Reply& reply) {
    const QString invalid = BottleName::check(bottle);
    if (!invalid.isEmpty()) {
        reply(Answer::failure(Fault::InvalidArgs, invalid));
        return;
    }
    enqueue(bottle,
            std::make_unique<CreateBottleJob>(m_store, bottle, runner, m_runners, &m_reclaimer, reply));
}

void BottleEngine::deleteBottle(const QString& bottle, const Reply& reply) {
    if (refuse(bottle, reply))
        return;
    const Reply announce = [this, bottle, reply](const Answer& answer) {
        if (answer.isGood())
            Q_EMIT bottleDeleted(bottle);
        reply(answer);
    };
    enqueue(bottle, std::make_unique<DeleteBottleJob>(m_store, bottle, m_runners, &m_reclaimer, announce));
}

void BottleEngine::updateExternalProgram(const QString& bottle, const QString& recordJson,
                                         const Reply& reply) {
    if (refuse(bottle, reply))
        return;
    QString error;
    const QJsonObject given = Programs::parse(recordJson, &error);
    if (!error.isEmpty()) {
        reply(Answer::failure(Fault::InvalidArgs, error));
        return;
    }
    enqueue(bottle, reply, [this, bottle, given] { return updateProgram(bottle, given); });
}

void BottleEngine::removeExternalProgram(const QString& bottle, const QString& programId,
                                         const Reply& reply) {
    if (!refuse(bottle, reply))
        enqueue(bottle, reply, [this, bottle, programId] { return removeProgram(bottle, programId); });
}

void BottleEngine::killProgram(const QString& bottle, const QString& programId, const Reply& reply) {
    if (refuse(bottle, reply))
        return;
    if (programId.isEmpty() || programId.size() > MaximumIdCharacters) {
        reply(Answer::failure(Fault::InvalidArgs, "The program's id is empty or too long."));
        return;
    }
    enqueue(bottle, std::make_unique<StopProgramJob>(m_store, bottle, programId, reply));
}

void BottleEngine::killWineServer(const QString& bottle, const Reply& reply) {
    if (refuse(bottle, reply))
        return;
    enqueue(bottle, std::make_unique<StopBottleJob>(m_store, bottle, m_runners, reply));
}

void BottleEngine::runCommand(const QString& bottle, const QString& commandLine, const Reply& reply) {
    if (refuse(bottle, reply))
        return;
    const QStringList arguments = WindowsCommandLine::split(commandLine);
    // Wine itself would take a leading "-" for its own option.
    if (arguments.isEmpty() || arguments.first().startsWith('-') || commandLine.contains(QChar(0)) ||
        commandLine.size() > MaximumCommandCharacters) {
        reply(
            Answer::failure(Fault::InvalidArgs, "The command line is empty, too long or names no program."));
        return;
    }
    enqueue(bottle, reply, [this, bottle, arguments] { return startCommand(bottle, arguments); });
}

Answer BottleEngine::updateProgram(const QString& bottle, const QJsonObject& given) {
    Answer failure;
    auto settings = loaded(bottle, &failure);
    if (!settings)
        return failure;
    QString error;
    const QString id = given.value("id").toString();
    const bool isNew = !settings->hasProgram(id);
    const QJsonObject record = isNew ? Programs::completed(given, QDateTime::currentDateTime(), &error)
                                     : Programs::merged(settings->program(id), given);
    if (record.isEmpty())
        return Answer::failure(Fault::InvalidArgs, error);
    if (!isNew && record == settings->program(id))
        return Answer::of();
    // Only what was given: the rest stays as it was written.
    settings->setProgram(id, isNew ? record : given);
    if (!saveSettings(bottle, *settings, &error))
        return Answer::failure(Fault::Failed, error);
    qInfo() << (isNew ? "added program" : "changed program") << id << "of" << BottleName::shown(bottle);
    const QString text = compact(settings->program(id));
    if (isNew)
        Q_EMIT programAdded(bottle, id, text);
    else
        Q_EMIT programUpdated(bottle, id, text);
    return Answer::of();
}

Answer BottleEngine::removeProgram(const QString& bottle, const QString& programId) {
    Answer failure;
    auto settings = loaded(bottle, &failure);
    if (!settings)
        return failure;
    QString error;
    if (!settings->removeProgram(programId))
        return noProgram(bottle, programId);
    if (!saveSettings(bottle, *settings, &error))
        return Answer::failure(Fault::Failed, error);
    qInfo() << "removed program" << BottleName::shown(programId) << "of" << BottleName::shown(bottle);
    Q_EMIT programDeleted(bottle, programId);
    return Answer::of();
}

Answer BottleEngine::startCommand(const QString& bottle, const QStringList& arguments) {
    Answer failure;
    const auto settings = loaded(bottle, &failure);
    if (!settings)
        return failure;
    const Runner runner = runnerOf(*settings);
    if (runner.wine.isEmpty())
        return Answer::failure(Fault::Failed,
                               QString("The Wine runner \"%1\" is not installed.").arg(settings->runner()));
    const QString path = m_store.pathOf(bottle);
    const QJsonObject variables = LaunchData::environment(path, settings->record());
    const QString fault =
        DetachedCommand::start(runner.wine, arguments, WineEnvironment::forProcess(variables), path);
    return fault.isEmpty() ? Answer::of() : Answer::failure(Fault::Failed, fault);
}

void BottleEngine::close() {
    m_closing = true;
    m_queue.close();
    if (m_queue.isIdle())
        Q_EMIT closed();
}

bool BottleEngine::refuse(const QString& bottle, const Reply& reply) const {
    const QString invalid = BottleName::check(bottle);
    if (!invalid.isEmpty())
        reply(Answer::failure(Fault::InvalidArgs, invalid));
    return !invalid.isEmpty();
}

void BottleEngine::enqueue(const QString& bottle, const Reply& reply, std::function<Answer()> work) {
    enqueue(bottle, std::make_unique<ImmediateJob>(std::move(work), reply));
}

// A queue that is closed drops the job, which then answers that the service is ending.
void BottleEngine::enqueue(const QString& bottle, std::unique_ptr<Job> job) {
    m_queue.add(bottle, std::move(job));
}

bool BottleEngine::saveSettings(const QString& bottle, const BottleYaml& settings, QString* error) {
    if (!m_store.save(bottle, settings, error)) {
        qWarning() << *error;
        return false;
    }
    writeLaunchData(bottle, settings);
    return true;
}

// A failure here is no failure of the request: a launch reads bottle.yml itself when this file is missing or
// older.
void BottleEngine::writeLaunchData(const QString& bottle, const BottleYaml& settings) const {
    const QString path = m_store.pathOf(bottle);
    QString error;
    if (!LaunchData::write(path, LaunchData::render(path, settings.record(), runnerOf(settings)), &error))
        qWarning() << error;
}

Runner BottleEngine::runnerOf(const BottleYaml& settings) const {
    const QString name = settings.runner();
    const auto runner = m_runners.find(name.isEmpty() ? QString(Runners::DefaultName) : name);
    return runner ? *runner : Runner{name, {}, {}};
}
