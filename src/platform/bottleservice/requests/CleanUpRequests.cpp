#include "bottleservice/requests/CleanUpRequests.h"

#include <QJsonArray>
#include <QJsonObject>

#include "bottleservice/bottles/JsonText.h"
#include "bottleservice/bottles/PackageOrigin.h"
#include "bottleservice/files/Background.h"
#include "bottleservice/jobs/KeepBottleJob.h"
#include "bottleservice/requests/BottleEngine.h"
#include "bottleservice/requests/BottleRequests.h"
#include "bottleservice/requests/ProgramRequests.h"
#include "bottleservice/requests/RequestChecks.h"

void CleanUpRequests::deleteIfUnused(const QString& bottle, const QString& ignoredProgram,
                                     const Reply& reply) {
    if (RequestChecks::refuseName(bottle, reply))
        return;
    DeleteUnusedJob::Tools tools = toolsFor(bottle);
    tools.enterPrograms = [programs = m_programs, bottle](const QVector<QJsonObject>& records) {
        return programs->enter(bottle, records);
    };
    m_engine->enqueue(
        bottle, std::make_unique<DeleteUnusedJob>(m_engine->jobBottle(bottle), ignoredProgram, tools, reply));
}

void CleanUpRequests::bottlesOfRemovedPackages(const Reply& reply) {
    const auto find = [store = m_engine->bottles().store()] {
        QJsonArray found;
        for (const QString& name : store.names()) {
            const QString directory = store.pathOf(name);
            const PackageOrigin::Facts facts = PackageOrigin::look(directory);
            QString error;
            const auto settings = PackageOrigin::stateOf(facts) == PackageOrigin::State::Removed
                                      ? store.load(name, &error)
                                      : std::nullopt;
            if (settings)
                found += QJsonObject{{"bottle", name},
                                     {"package", facts.package},
                                     {"lost", QJsonArray::fromStringList(PackageOrigin::lostPrograms(
                                                  directory, settings->programs()))}};
        }
        return JsonText::compact(found);
    };
    Background::run(m_engine, find, [reply](const QString& found) { reply(Answer::of(found)); });
}

void CleanUpRequests::keepBottle(const QString& bottle, const Reply& reply) {
    if (RequestChecks::refuseUnknown(m_engine->bottles(), bottle, reply))
        return;
    m_engine->enqueue(bottle, std::make_unique<KeepBottleJob>(m_engine->jobBottle(bottle), reply));
}

std::unique_ptr<Job> CleanUpRequests::makeDeletionOfUnused(const QString& bottle, const Reply& reply) {
    return std::make_unique<DeleteUnusedJob>(m_engine->jobBottle(bottle), QString(), toolsFor(bottle), reply);
}

std::unique_ptr<Job> CleanUpRequests::makeJudgement(const QString& bottle, const Reply& reply) {
    DeleteUnusedJob::Tools tools = toolsFor(bottle);
    tools.makeDeletion = nullptr;
    return std::make_unique<DeleteUnusedJob>(m_engine->jobBottle(bottle), QString(), tools, reply);
}

DeleteUnusedJob::Tools CleanUpRequests::toolsFor(const QString& bottle) const {
    return {m_programs->iconScript(),
            [bottles = m_bottles, bottle](const Reply& deleted) {
                return bottles->makeDeletion(bottle, deleted);
            },
            {}};
}
