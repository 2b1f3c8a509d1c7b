#include "bottleservice/requests/BottleRequests.h"

#include <QDateTime>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QPointer>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/bottles/Emulators.h"
#include "bottleservice/bottles/JsonText.h"
#include "bottleservice/bottles/PublicBottles.h"
#include "bottleservice/jobs/CreateBottleJob.h"
#include "bottleservice/jobs/DeleteBottleJob.h"
#include "bottleservice/requests/BottleEngine.h"
#include "bottleservice/requests/RequestChecks.h"
#include "bottleservice/wine/WineCommand.h"
#include "bottleservice/wine/WineEnvironment.h"

using Fault = Answer::Fault;
using JsonText::compact;

namespace {

constexpr int VersionTimeoutMs = 10000;

}  // namespace

BottleRequests::BottleRequests(BottleEngine* engine, QObject* parent) : QObject(parent), m_engine(engine) {}

Answer BottleRequests::list() const {
    return Answer::of(compact(QJsonArray::fromStringList(m_engine->bottles().store().names())));
}

Answer BottleRequests::get(const QString& bottle) const {
    const BottleAccess& bottles = m_engine->bottles();
    Answer failure;
    const auto settings = bottles.load(bottle, &failure);
    if (!settings)
        return failure;
    bottles.updateLaunchData(bottle, *settings);
    QJsonObject record = settings->record();
    record.insert("Path", bottles.pathOf(bottle));
    return Answer::of(compact(record));
}

Answer BottleRequests::getEmulators(const QString& bottle) const {
    Answer failure;
    const auto settings = m_engine->bottles().load(bottle, &failure);
    if (!settings)
        return failure;
    return Answer::of(compact(Emulators::describe(settings->record().value("Emulator").toString())));
}

Answer BottleRequests::checkPublicBottles(const QString& queryJson) const {
    const QJsonDocument query = QJsonDocument::fromJson(queryJson.toUtf8());
    if (!query.isObject())
        return Answer::failure(Fault::InvalidArgs, "The description of the file is no JSON object.");
    const QString table = m_engine->dataDir() + "/public-bottles.json";
    return Answer::of(PublicBottles::load(table).bottleFor(query.object()));
}

void BottleRequests::getRunnerVersion(const QString& name, const Reply& reply) {
    const auto runner = m_engine->bottles().runners().find(name);
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
    connect(command, &WineCommand::finished, this, [this, command, key, reply](const QString& errorText) {
        const QString version = Runners::parseVersion(command->output());
        command->deleteLater();
        if (errorText.isEmpty())
            m_versions.insert(key, version);
        reply(errorText.isEmpty() ? Answer::of(version) : Answer::failure(Fault::Failed, errorText));
    });
    command->start(VersionTimeoutMs);
}

void BottleRequests::createBottles(const QString& bottle, const QString& runner, const Reply& reply) {
    if (RequestChecks::refuseName(bottle, reply))
        return;
    const BottleAccess& bottles = m_engine->bottles();
    m_engine->enqueue(bottle,
                      std::make_unique<CreateBottleJob>(bottles.store(), bottle, runner, bottles.runners(),
                                                        m_engine->templates(), m_engine->reclaimer(), reply));
}

void BottleRequests::deleteBottle(const QString& bottle, const Reply& reply) {
    if (!RequestChecks::refuseName(bottle, reply))
        m_engine->enqueue(bottle, makeDeletion(bottle, reply));
}

std::unique_ptr<Job> BottleRequests::makeDeletion(const QString& bottle, const Reply& reply) {
    Q_EMIT aboutToDelete(bottle);
    const Reply announce = [self = QPointer<BottleRequests>(this), bottle, reply](const Answer& answer) {
        if (answer.isGood() && self)
            Q_EMIT self->bottleDeleted(bottle);
        reply(answer);
    };
    const BottleAccess& bottles = m_engine->bottles();
    return std::make_unique<DeleteBottleJob>(bottles.store(), bottle, bottles.runners(),
                                             m_engine->reclaimer(), announce);
}
