#include "bottleservice/requests/BottleRepairRequests.h"

#include <QJsonArray>
#include <QJsonObject>

#include "bottleservice/bottles/JsonText.h"
#include "bottleservice/jobs/RepairBottleJob.h"
#include "bottleservice/requests/BottleEngine.h"
#include "bottleservice/wine/PrefixDamage.h"

using JsonText::compact;

namespace {

constexpr int MaximumFilesTold = 50;

QJsonObject resultOf(const Answer& answer, int mended) {
    if (answer.isGood())
        return {{"ok", true}, {"mended", mended}};
    QJsonObject result{{"ok", false}, {"error", answer.reason.text()}, {"reasons", answer.reason.toJson()}};
    if (answer.fault == Answer::Fault::Busy)
        result.insert("busy", QJsonArray::fromStringList(answer.running));
    return result;
}

}  // namespace

BottleRepairRequests::BottleRepairRequests(BottleEngine* engine, QObject* parent)
    : QObject(parent), m_engine(engine) {}

void BottleRepairRequests::damage(const QString& bottle, const Reply& reply) {
    Answer failure;
    const auto settings = m_engine->loaded(bottle, &failure);
    if (!settings) {
        reply(failure);
        return;
    }
    Templates* templates = m_engine->templates();
    const QString original = templates->pathOf(Templates::keyOf(m_engine->runnerOf(*settings)));
    auto files = std::make_shared<QStringList>();
    templates->run(
        this,
        [files, original, prefix = m_engine->store().pathOf(bottle)](const std::atomic_bool& cancelled) {
            *files = PrefixDamage::find(prefix, original, cancelled);
            return QString();
        },
        [files, reply](const QString&) {
            reply(Answer::of(compact(
                QJsonObject{{"count", files->size()},
                            {"files", QJsonArray::fromStringList(files->mid(0, MaximumFilesTold))}})));
        });
}

void BottleRepairRequests::renewBottle(const QString& bottle, const Reply& reply) {
    if (m_engine->refuseUnknown(bottle, reply))
        return;
    auto mended = std::make_shared<int>(0);
    auto job = std::make_unique<RepairBottleJob>(
        m_engine, bottle, mended,
        [reply, mended](const Answer& answer) { reply(Answer::of(compact(resultOf(answer, *mended)))); });
    auto& renewals = m_renewals[bottle];
    renewals.removeAll(nullptr);
    renewals += job.get();
    m_engine->renew(bottle);  // what the Wine's update brings is no damage
    m_engine->enqueue(bottle, std::move(job));
}

void BottleRepairRequests::cancelRenewal(const QString& bottle, const Reply& reply) {
    cancelAll(bottle);
    reply(Answer::of());
}

void BottleRepairRequests::cancelAll(const QString& bottle) {
    for (const QPointer<InstallJob>& job : m_renewals.take(bottle)) {
        if (job)
            job->cancel();
    }
}
