#include "bottleservice/requests/BackupRequests.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPointer>

#include "bottleservice/backup/BackupReader.h"
#include "bottleservice/backup/UnfinishedBackups.h"
#include "bottleservice/bottles/JsonText.h"
#include "bottleservice/files/Background.h"
#include "bottleservice/jobs/ExportBottleJob.h"
#include "bottleservice/jobs/ImportBottleJob.h"
#include "bottleservice/jobs/PortableBottleJob.h"
#include "bottleservice/requests/BottleEngine.h"
#include "bottleservice/requests/RequestChecks.h"

using Fault = Answer::Fault;

namespace {

constexpr int ProgressMs = 200;
constexpr int MaximumShown = 100;  // names in a description

Answer describe(const QString& file) {
    Reason failure;
    const auto list = BackupReader(file).readList(&failure);
    if (!list)
        return Answer::failure(Fault::Failed, failure);
    return Answer::of(JsonText::compact(
        QJsonObject{{"ok", true},
                    {"name", list->name},
                    {"runner", list->runner},
                    {"created", list->created.toString(Qt::ISODate)},
                    {"programs", QJsonArray::fromStringList(list->programs.mid(0, MaximumShown))},
                    {"bytes", list->bytes()},
                    {"files", list->entries.size()},
                    {"leftOut", QJsonArray::fromStringList(list->leftOut.mid(0, MaximumShown))}}));
}

}  // namespace

BackupRequests::BackupRequests(BottleEngine* engine, QObject* parent) : QObject(parent), m_engine(engine) {
    m_worker.setMaxThreadCount(1);
    m_timer.setInterval(ProgressMs);
    connect(&m_timer, &QTimer::timeout, this, &BackupRequests::tellProgress);
}

BackupRequests::~BackupRequests() {
    for (const Copy& copy : qAsConst(m_copies))
        copy.progress->cancelled = true;
    m_worker.waitForDone();
}

void BackupRequests::recover() {
    UnfinishedBackups::removeAll(m_engine->dataDir());
}

bool BackupRequests::refuse(const QString& file, const Reply& reply) const {
    if (m_copies.contains(file))
        reply(Answer::failure(Fault::Failed, Reason(Reason::CopyUnderWay, {file})));
    return m_copies.contains(file);
}

void BackupRequests::exportBottle(const QString& bottle, const QString& file, const Reply& reply) {
    if (RequestChecks::refuseUnknown(m_engine->bottles(), bottle, reply) || refuse(file, reply))
        return;
    auto progress = std::make_shared<BackupFile::Progress>();
    auto job = std::make_unique<ExportBottleJob>(
        m_engine->jobBottle(bottle), file, ExportBottleJob::Tools{m_engine->dataDir(), &m_worker, progress},
        ending(file, reply));
    begin(file, progress, bottle, std::move(job));
}

NewBottleTools BackupRequests::toolsOfNewBottle(const std::shared_ptr<BackupFile::Progress>& progress) {
    const BottleAccess& bottles = m_engine->bottles();
    return {bottles.store(),
            bottles.runners(),
            m_engine->templates(),
            m_engine->reclaimer(),
            &m_worker,
            progress,
            [engine = m_engine](const QString& bottle) { return engine->hasJobs(bottle); }};
}

void BackupRequests::importBottle(const QString& file, const QString& name, const Reply& reply) {
    if ((!name.isEmpty() && RequestChecks::refuseName(name, reply)) || refuse(file, reply))
        return;
    auto progress = std::make_shared<BackupFile::Progress>();
    auto job = std::make_unique<ImportBottleJob>(file, name, toolsOfNewBottle(progress),
                                                 announcing(ending(file, reply)));
    // A queue of its own: the bottle's name is chosen at the end.
    begin(file, progress, "/" + file, std::move(job));
}

void BackupRequests::importPortable(const QString& source, const Reply& reply) {
    if (refuse(source, reply))
        return;
    auto progress = std::make_shared<BackupFile::Progress>();
    auto job = std::make_unique<PortableBottleJob>(source, toolsOfNewBottle(progress),
                                                   announcing(ending(source, reply)));
    // A queue of its own: the bottle's name is chosen at the end.
    begin(source, progress, "/" + source, std::move(job));
}

void BackupRequests::describeBackup(const QString& file, const Reply& reply) {
    ++m_descriptions;
    Background::run(
        this, [file] { return describe(file); },
        [this, reply](const Answer& answer) {
            --m_descriptions;
            reply(answer);
        });
}

void BackupRequests::cancelBottleCopy(const QString& file, const Reply& reply) {
    // A copy of the function, since the copy of the bottle may end meanwhile.
    if (const auto cancel = m_copies.value(file).cancel)
        cancel();
    reply(Answer::of());
}

Reply BackupRequests::ending(const QString& file, const Reply& reply) {
    return [self = QPointer<BackupRequests>(this), file, reply](const Answer& answer) {
        if (self)
            self->end(file);
        reply(answer);
    };
}

Reply BackupRequests::announcing(const Reply& reply) {
    return [self = QPointer<BackupRequests>(this), reply](const Answer& answer) {
        reply(answer);
        if (self && answer.isGood())
            Q_EMIT self->bottleMade(
                QJsonDocument::fromJson(answer.text.toUtf8()).object()["bottle"].toString());
    };
}

void BackupRequests::begin(const QString& file, const std::shared_ptr<BackupFile::Progress>& progress,
                           const QString& queue, std::unique_ptr<Job> job) {
    const auto cancel = [job = QPointer<Job>(job.get()), progress] {
        progress->cancelled = true;
        if (job)
            job->cancel();
    };
    m_copies.insert(file, {progress, cancel});
    m_timer.start();
    m_engine->enqueue(queue, std::move(job));
}

void BackupRequests::end(const QString& file) {
    m_copies.remove(file);
    if (m_copies.isEmpty())
        m_timer.stop();
}

void BackupRequests::tellProgress() {
    for (auto copy = m_copies.begin(); copy != m_copies.end(); ++copy) {
        const qint64 done = copy->progress->done;
        if (std::exchange(copy->told, done) != done)
            Q_EMIT progress(copy.key(), done, copy->progress->total);
    }
}
