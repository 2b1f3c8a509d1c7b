#include "bottleservice/requests/BottleEngine.h"

#include <malloc.h>

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/bottles/Emulators.h"
#include "bottleservice/bottles/JsonText.h"
#include "bottleservice/bottles/PublicBottles.h"
#include "bottleservice/components/BottleBackup.h"
#include "bottleservice/components/ComponentStore.h"
#include "bottleservice/files/AtomicFile.h"
#include "bottleservice/files/WorkingDirectory.h"
#include "bottleservice/jobs/CreateBottleJob.h"
#include "bottleservice/jobs/DeleteBottleJob.h"
#include "bottleservice/jobs/InstallJob.h"
#include "bottleservice/jobs/RenewBottleJob.h"
#include "bottleservice/wine/BottleStopper.h"
#include "bottleservice/wine/LaunchData.h"
#include "bottleservice/wine/LaunchRecords.h"
#include "bottleservice/wine/RunningPrograms.h"
#include "bottleservice/wine/WineCommand.h"
#include "bottleservice/wine/WineEnvironment.h"

using Fault = Answer::Fault;
using JsonText::compact;

namespace {

constexpr int VersionTimeoutMs = 10000;
constexpr int TrimMs = 3000;

}  // namespace

BottleEngine::BottleEngine(const QString& dataDir, QObject* parent)
    : QObject(parent),
      m_dataDir(dataDir),
      m_store(dataDir),
      m_runners(dataDir),
      m_templates(dataDir, &m_reclaimer) {
    if (!QDir().mkpath(m_store.root()))
        qWarning() << "cannot make" << m_store.root();
    connect(&m_queue, &JobQueue::idle, this, &BottleEngine::tellClosed);
    // The service rests for hours after minutes of work.
    m_trim.setSingleShot(true);
    m_trim.setInterval(TrimMs);
    connect(&m_trim, &QTimer::timeout, this, [] { malloc_trim(0); });
    connect(&m_queue, &JobQueue::idle, &m_trim, qOverload<>(&QTimer::start));
    connect(&m_stops, &JobQueue::idle, this, &BottleEngine::tellClosed);
    connect(&m_templates, &Templates::idle, this, &BottleEngine::tellClosed);
}

BottleEngine::~BottleEngine() = default;

void BottleEngine::recover() {
    QStringList leftovers =
        WorkingDirectory::leftovers(m_store.root()) + WorkingDirectory::leftovers(m_dataDir + "/templates");
    for (const QString& kind : ComponentStore::kinds())
        leftovers += WorkingDirectory::leftovers(ComponentStore(m_dataDir).directoryOf(kind));
    for (const QString& path : qAsConst(leftovers)) {
        qWarning() << "an earlier run of the service was interrupted; removing what it left:" << path;
        auto* stopper = new BottleStopper(path, m_runners.wineserverFor({}), this);
        connect(stopper, &BottleStopper::finished, this, [this, stopper, path] {
            m_reclaimer.remove(path);
            stopper->deleteLater();
        });
        stopper->start();
    }
    removeUnfinishedFiles();
    for (const QString& bottle : m_store.names()) {
        if (BottleBackup::state(m_store.pathOf(bottle)) != BottleBackup::State::None)
            enqueue(bottle, std::make_unique<RecoverInstallJob>(this, bottle));
    }
    for (const QString& bottle : outdatedBottles())
        renew(bottle);
    removeUnneededTemplates();
}

QStringList BottleEngine::outdatedBottles() const {
    QStringList bottles;
    for (const QString& bottle : m_store.names()) {
        QString error;
        const auto settings = m_store.load(bottle, &error);
        const QString made = settings ? settings->templateKey() : QString();
        const QString key = made.isEmpty() ? QString() : Templates::keyOf(runnerOf(*settings));
        if (!key.isEmpty() && key != made)
            bottles += bottle;
    }
    return bottles;
}

void BottleEngine::removeUnneededTemplates() {
    QStringList keys;
    for (const QString& name : m_runners.names())
        keys += Templates::keyOf(*m_runners.find(name));
    for (const QString& bottle : m_store.names()) {
        QString error;
        if (const auto settings = m_store.load(bottle, &error))
            keys += settings->templateKey();
    }
    m_templates.removeAllBut(keys);
}

void BottleEngine::removeUnfinishedFiles() {
    QStringList files = AtomicFile::leftovers(m_dataDir);
    for (const QString& bottle : m_store.names())
        files += AtomicFile::leftovers(m_store.pathOf(bottle));
    for (const QString& file : qAsConst(files)) {
        qWarning() << "an earlier run of the service was interrupted; removing what it left:" << file;
        QFile::remove(file);
    }
}

void BottleEngine::renew(const QString& bottle) {
    enqueue(bottle, std::make_unique<RenewBottleJob>(this, bottle));
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
    if (m_store.state(bottle) == BottleStore::State::Missing)
        return Answer::failure(Fault::NoSuchBottle, Reason(Reason::NoBottle, {BottleName::shown(bottle)}));
    const QString foreign = m_store.check(bottle);
    return foreign.isEmpty() ? Answer::of() : Answer::failure(Fault::NoSuchBottle, foreign);
}

Answer BottleEngine::noProgram(const QString& bottle, const QString& programId) {
    return Answer::failure(Fault::NoSuchProgram,
                           QString("The bottle \"%1\" has no program \"%2\".")
                               .arg(BottleName::shown(bottle), BottleName::shown(programId)));
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

Answer BottleEngine::getEmulators(const QString& bottle) const {
    Answer failure;
    const auto settings = loaded(bottle, &failure);
    if (!settings)
        return failure;
    return Answer::of(compact(Emulators::describe(settings->record().value("Emulator").toString())));
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
        reply(Answer::failure(Fault::InvalidArgs, Reason(Reason::NoRunner, {BottleName::shown(name)})));
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
    enqueue(bottle, std::make_unique<CreateBottleJob>(m_store, bottle, runner, m_runners, &m_templates,
                                                      &m_reclaimer, reply));
}

void BottleEngine::deleteBottle(const QString& bottle, const Reply& reply) {
    if (!refuse(bottle, reply))
        enqueue(bottle, deletionOf(bottle, reply));
}

std::unique_ptr<Job> BottleEngine::deletionOf(const QString& bottle, const Reply& reply) {
    Q_EMIT aboutToDelete(bottle);
    const Reply announce = [this, bottle, reply](const Answer& answer) {
        if (answer.isGood())
            Q_EMIT bottleDeleted(bottle);
        reply(answer);
    };
    return std::make_unique<DeleteBottleJob>(m_store, bottle, m_runners, &m_reclaimer, announce);
}

bool BottleEngine::isIdle() const {
    return m_queue.isIdle() && m_stops.isIdle() && m_templates.isIdle() && m_reclaimer.isIdle();
}

bool BottleEngine::isQuiet() const {
    return m_queue.isIdle() && m_stops.isIdle() && !m_templates.isAwaited();
}

void BottleEngine::close() {
    m_closing = true;
    m_templates.cancel();
    m_queue.close();
    m_stops.close();
    tellClosed();
}

void BottleEngine::tellClosed() {
    if (m_closing && m_queue.isIdle() && m_stops.isIdle() && m_templates.isIdle())
        Q_EMIT closed();
}

bool BottleEngine::refuse(const QString& bottle, const Reply& reply) const {
    const QString invalid = BottleName::check(bottle);
    if (!invalid.isEmpty())
        reply(Answer::failure(Fault::InvalidArgs, invalid));
    return !invalid.isEmpty();
}

bool BottleEngine::refuseUnknown(const QString& bottle, const Reply& reply) const {
    const Answer check = checked(bottle);
    if (!check.isGood())
        reply(check);
    return !check.isGood();
}

void BottleEngine::enqueue(const QString& bottle, const Reply& reply, std::function<Answer()> work) {
    enqueue(bottle, std::make_unique<ImmediateJob>(std::move(work), reply));
}

// A queue that is closed drops the job, which then answers that the service is ending.
void BottleEngine::enqueue(const QString& bottle, std::unique_ptr<Job> job) {
    m_queue.add(bottle, std::move(job));
}

void BottleEngine::enqueueStop(const QString& bottle, std::unique_ptr<Job> job) {
    m_stops.add(bottle, std::move(job));
}

QStringList BottleEngine::runningPrograms(const QString& bottle) const {
    Answer failure;
    const auto settings = loaded(bottle, &failure);
    const QJsonObject programs =
        settings ? settings->record().value("External_Programs").toObject() : QJsonObject();
    return RunningPrograms::names(Processes().ofBottle(m_store.pathOf(bottle)),
                                  LaunchRecord::starting(m_store.runningDir(), bottle), programs);
}

void BottleEngine::waitForPrograms(const QString& bottle, QObject* context,
                                   const std::function<void(const QStringList&)>& then, int limitMs) {
    RunningPrograms::await(
        context, limitMs, [this, bottle] { return runningPrograms(bottle); }, then);
}

void BottleEngine::waitBeforeInstall(const QString& bottle, QObject* context,
                                     const std::function<void(const QStringList&)>& then) {
    if (m_queue.hasJobs(bottle))
        then({});
    else
        waitForPrograms(bottle, context, then);
}

// It loses its name in the bottle at once, so that the next installation has the place free.
void BottleEngine::removeBackup(const QString& bottle) {
    const QString path = m_store.pathOf(bottle);
    QString error = BottleBackup::dismiss(path);
    if (BottleBackup::state(path) == BottleBackup::State::None)
        return;
    const QString hidden = WorkingDirectory::pathBeside(path, WorkingDirectory::DeletingPrefix);
    if (error.isEmpty())
        error = WorkingDirectory::moveInto(BottleBackup::pathOf(path), hidden);
    if (error.isEmpty())
        m_reclaimer.remove(hidden);
    else
        qWarning() << error;
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
