#include "bottleservice/requests/BottleRepairRequests.h"

#include <QJsonArray>
#include <QJsonObject>

#include "bottleservice/bottles/JsonText.h"
#include "bottleservice/jobs/RepairBottleJob.h"
#include "bottleservice/requests/BottleEngine.h"
#include "bottleservice/requests/RequestChecks.h"
#include "bottleservice/wine/PrefixDamage.h"

using JsonText::compact;

namespace {

constexpr int MaximumFilesTold = 50;

QJsonObject resultOf(const Answer& answer, int renewed) {
    if (answer.isGood())
        return {{"ok", true}, {"mended", renewed}};
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
    const auto settings = m_engine->bottles().load(bottle, &failure);
    if (!settings) {
        reply(failure);
        return;
    }
    Templates* templates = m_engine->templates();
    const QString original = templates->pathOf(Templates::keyOf(m_engine->bottles().runnerOf(*settings)));
    auto files = std::make_shared<QStringList>();
    templates->run(
        this,
        [files, original, prefix = m_engine->bottles().pathOf(bottle)](const std::atomic_bool& cancelled) {
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
    if (RequestChecks::refuseUnknown(m_engine->bottles(), bottle, reply))
        return;
    auto renewed = std::make_shared<int>(0);
    auto job = std::make_unique<RepairBottleJob>(
        m_engine->jobBottle(bottle), renewed,
        [reply, renewed](const Answer& answer) { reply(Answer::of(compact(resultOf(answer, *renewed)))); });
    auto& renewals = m_renewals[bottle];
    renewals.removeAll(nullptr);
    renewals += job.get();
    m_engine->renew(bottle);  // files that an update of Wine has added are no damage
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
