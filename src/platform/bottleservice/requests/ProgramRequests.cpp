#include "bottleservice/requests/ProgramRequests.h"

#include <QDateTime>
#include <QDebug>
#include <QJsonDocument>
#include <QJsonObject>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/bottles/FoundPrograms.h"
#include "bottleservice/bottles/JsonText.h"
#include "bottleservice/bottles/ManifestExport.h"
#include "bottleservice/bottles/ProgramIcon.h"
#include "bottleservice/bottles/Programs.h"
#include "bottleservice/bottles/SetupManifest.h"
#include "bottleservice/bottles/WindowsPath.h"
#include "bottleservice/files/AtomicFile.h"
#include "bottleservice/files/Background.h"
#include "bottleservice/jobs/WorkerJob.h"
#include "bottleservice/requests/BottleEngine.h"
#include "bottleservice/requests/RequestChecks.h"

using Fault = Answer::Fault;
using JsonText::compact;

ProgramRequests::ProgramRequests(BottleEngine* engine, const QString& iconScript, QObject* parent)
    : QObject(parent), m_engine(engine), m_iconScript(iconScript) {}

ProgramRequests::~ProgramRequests() {
    m_isEnding = true;
    m_worker.waitForDone();
}

void ProgramRequests::updateExternalProgram(const QString& bottle, const QString& recordJson,
                                            const Reply& reply) {
    if (RequestChecks::refuseName(bottle, reply))
        return;
    QString error;
    const QJsonObject given = Programs::parse(recordJson, &error);
    if (!error.isEmpty()) {
        reply(Answer::failure(Fault::InvalidArgs, error));
        return;
    }
    m_engine->enqueue(bottle, reply, [this, bottle, given] { return updateProgram(bottle, given); });
}

void ProgramRequests::removeExternalProgram(const QString& bottle, const QString& programId,
                                            const Reply& reply) {
    if (!RequestChecks::refuseName(bottle, reply))
        m_engine->enqueue(bottle, reply,
                          [this, bottle, programId] { return removeProgram(bottle, programId); });
}

Answer ProgramRequests::updateProgram(const QString& bottle, const QJsonObject& given) {
    Answer failure;
    auto settings = m_engine->bottles().load(bottle, &failure);
    if (!settings)
        return failure;
    QString error;
    const QString id = given.value("id").toString();
    const bool isNew = !settings->hasProgram(id);
    const QJsonObject record =
        isNew ? Programs::completed(
                    SetupManifest::completed(given, SetupManifest::load(m_engine->bottles().pathOf(bottle))),
                    QDateTime::currentDateTime(), &error)
              : Programs::merged(settings->program(id), given);
    if (record.isEmpty())
        return Answer::failure(Fault::InvalidArgs, error);
    if (!isNew && record == settings->program(id))
        return Answer::of();
    // Writes only the given keys; the others stay as they are in the file.
    settings->setProgram(id, isNew ? record : given);
    if (!m_engine->bottles().save(bottle, *settings, &error))
        return Answer::failure(Fault::Failed, error);
    qInfo() << (isNew ? "added program" : "changed program") << id << "of" << BottleName::shown(bottle);
    const QString text = compact(settings->program(id));
    if (isNew) {
        Q_EMIT programAdded(bottle, id, text);
        if (record.value("icon").toString().isEmpty())
            takeIcon(bottle, id, record.value("path").toString());
    } else {
        Q_EMIT programUpdated(bottle, id, text);
    }
    return Answer::of();
}

void ProgramRequests::announce(const QString& bottle) {
    Answer failure;
    const auto settings = m_engine->bottles().load(bottle, &failure);
    const QJsonObject programs = settings ? settings->programs() : QJsonObject();
    for (auto it = programs.begin(); it != programs.end(); ++it) {
        const QJsonObject record = it.value().toObject();
        Q_EMIT programAdded(bottle, it.key(), compact(record));
        if (record["icon"].toString().isEmpty())
            takeIcon(bottle, it.key(), record["path"].toString());
    }
}

/// Gives a program that was entered without an icon the icon of its file, as its banner has it.
void ProgramRequests::takeIcon(const QString& bottle, const QString& id, const QString& programPath) {
    const QString path = m_engine->bottles().pathOf(bottle);
    inWorker(
        [this, path, id, programPath] {
            return Answer::of(ProgramIcon::extract(m_iconScript, path, id,
                                                   {WindowsPath::toUnix(path, programPath)}, m_isEnding));
        },
        [this, bottle, id](const Answer& icon) {
            if (!icon.text.isEmpty())
                m_engine->enqueue(
                    bottle, [](const Answer&) {},
                    [this, bottle, id, icon] { return giveIcon(bottle, id, icon.text); });
        });
}

Answer ProgramRequests::giveIcon(const QString& bottle, const QString& id, const QString& icon) {
    Answer failure;
    const auto settings = m_engine->bottles().load(bottle, &failure);
    if (!settings)
        return failure;
    if (!settings->hasProgram(id))
        ProgramIcon::remove(m_engine->bottles().pathOf(bottle), id);
    else if (settings->program(id).value("icon").toString().isEmpty())
        return updateProgram(bottle, {{"id", id}, {"icon", icon}});
    return Answer::of();
}

Answer ProgramRequests::removeProgram(const QString& bottle, const QString& programId) {
    Answer failure;
    auto settings = m_engine->bottles().load(bottle, &failure);
    if (!settings)
        return failure;
    QString error;
    if (!settings->removeProgram(programId))
        return RequestChecks::noProgram(bottle, programId);
    if (!m_engine->bottles().save(bottle, *settings, &error))
        return Answer::failure(Fault::Failed, error);
    qInfo() << "removed program" << BottleName::shown(programId) << "of" << BottleName::shown(bottle);
    ProgramIcon::remove(m_engine->bottles().pathOf(bottle), programId);
    Q_EMIT programDeleted(bottle, programId);
    return Answer::of();
}

void ProgramRequests::inWorker(std::function<Answer()> work, const Reply& reply) {
    Background::run(&m_worker, this, std::move(work), reply);
}

void ProgramRequests::listAllPrograms(const Reply& reply) {
    inWorker(
        [store = m_engine->bottles().store()] {
            QJsonArray summaries;
            for (const QString& bottle : store.names()) {
                QString error;
                const auto settings = store.load(bottle, &error);
                if (!settings) {
                    qWarning() << error;
                    continue;
                }
                const QJsonObject programs = settings->programs();
                for (const QJsonValue& program : programs)
                    summaries.append(Programs::summary(bottle, store.pathOf(bottle), program.toObject()));
            }
            return Answer::of(compact(summaries));
        },
        reply);
}

void ProgramRequests::read(const QString& bottle, const Reply& reply,
                           std::function<QJsonArray(const QJsonObject&)> work) {
    Answer failure;
    const auto settings = m_engine->bottles().load(bottle, &failure);
    if (!settings) {
        reply(failure);
        return;
    }
    const QJsonObject programs = settings->programs();
    inWorker([work = std::move(work), programs] { return Answer::of(compact(work(programs))); }, reply);
}

void ProgramRequests::listBottlesAllPrograms(const QString& bottle, const Reply& reply) {
    read(bottle, reply, [bottle, path = m_engine->bottles().pathOf(bottle)](const QJsonObject& programs) {
        QJsonArray all;
        QSet<QString> known;
        for (const QJsonValue& program : programs) {
            all.append(program);
            known += program.toObject()["path"].toString().toLower();
        }
        for (const QJsonValue& program : BottleScan::discovered(bottle, path)) {
            if (!known.contains(program.toObject()["path"].toString().toLower()))
                all.append(program);
        }
        return all;
    });
}

void ProgramRequests::listDlls(const QString& bottle, const Reply& reply) {
    read(bottle, reply, [path = m_engine->bottles().pathOf(bottle)](const QJsonObject& programs) {
        return QJsonArray::fromStringList(BottleScan::dllsBeside(path, programs));
    });
}

void ProgramRequests::listUpdaters(const QString& bottle, const Reply& reply) {
    read(bottle, reply, [path = m_engine->bottles().pathOf(bottle)](const QJsonObject& programs) {
        return QJsonArray::fromStringList(BottleScan::updatersBeside(path, programs));
    });
}

void ProgramRequests::scanApplicationLinks(const QString& bottle, qint64 since, const Reply& reply) {
    if (RequestChecks::refuseName(bottle, reply))
        return;
    const auto work = [this, bottle, since, script = m_iconScript, store = m_engine->bottles().store()](
                          const std::atomic_bool& cancelled) -> WorkerJob::Conclusion {
        const QString path = store.pathOf(bottle);
        QString error;
        const auto settings = store.check(bottle).isEmpty() ? store.load(bottle, &error) : std::nullopt;
        Found found;
        if (settings)
            found = FoundPrograms(path, script, cancelled)
                        .ofShortcuts(BottleScan::shortcuts(path, QDateTime::fromSecsSinceEpoch(since)),
                                     settings->programs());
        return [this, bottle, path, since, found] {
            const Answer answer = enter(bottle, found);
            if (answer.isGood())
                BottleScan::clearUsersDesktop(path, QDateTime::fromSecsSinceEpoch(since));
            return answer;
        };
    };
    m_engine->enqueue(bottle, std::make_unique<WorkerJob>(work, reply));
}

void ProgramRequests::dumpManifest(const QString& formJson, const Reply& reply) {
    Reason reason;
    const QJsonObject form = ManifestExport::parseForm(formJson, &reason);
    if (!reason.isEmpty()) {
        reply(Answer::failure(Fault::InvalidArgs, reason));
        return;
    }
    const QString bottle = form["bottlesName"].toString();
    if (!RequestChecks::refuseName(bottle, reply))
        m_engine->enqueue(bottle, reply, [this, bottle, form] { return writeManifest(bottle, form); });
}

Answer ProgramRequests::writeManifest(const QString& bottle, const QJsonObject& form) {
    Answer failure;
    const auto settings = m_engine->bottles().load(bottle, &failure);
    if (!settings)
        return failure;
    const QString id = form["programUuid"].toString();
    if (!settings->hasProgram(id))
        return RequestChecks::noProgram(bottle, id);
    const QString directory = m_engine->bottles().pathOf(bottle);
    const QString path = directory + ManifestExport::FileName;
    Reason reason;
    const QByteArray text = ManifestExport::render(
        ManifestExport::make(form, settings->record(), settings->program(id), SetupManifest::load(directory)),
        &reason);
    if (text.isEmpty())
        return Answer::failure(Fault::Failed, reason);
    QString error;
    if (!AtomicFile::replace(path, text, &error))
        return Answer::failure(Fault::Failed, error);
    qInfo() << "wrote" << path;
    return Answer::of(path);
}

Answer ProgramRequests::enter(const QString& bottle, const Found& found) {
    Answer failure;
    auto settings = m_engine->bottles().load(bottle, &failure);
    if (!settings)
        return failure;
    QJsonArray added;
    QString error;
    const auto manifest = SetupManifest::load(m_engine->bottles().pathOf(bottle));
    for (const QJsonObject& given : found) {
        const QJsonObject record = Programs::completed(SetupManifest::completed(given, manifest),
                                                       QDateTime::currentDateTime(), &error);
        settings->setProgram(given["id"].toString(), record);
        added.append(record);
    }
    if (!added.isEmpty() && !m_engine->bottles().save(bottle, *settings, &error))
        return Answer::failure(Fault::Failed, error);
    for (const QJsonValue& record : qAsConst(added)) {
        const QString id = record["id"].toString();
        qInfo() << "found program" << id << "in the shortcuts of" << BottleName::shown(bottle);
        Q_EMIT programAdded(bottle, id, compact(settings->program(id)));
    }
    Q_EMIT scanned(bottle);
    return Answer::of(compact(added));
}
