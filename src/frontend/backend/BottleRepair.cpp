#include "backend/BottleRepair.h"

#include <QDebug>

#include "backend/PendingWork.h"

namespace {

constexpr int QuestionTimeoutMs = 10000;

}  // namespace

void BottleRepair::ask(const QString& method, const QVariantList& arguments, QObject* context,
                       const Handler& handler) {
    setTimeout(QuestionTimeoutMs);
    watch(method, arguments, context, handler);
}

void BottleRepair::work(const QString& method, const QVariantList& arguments, QObject* context,
                        const Handler& handler) {
    setTimeout(LongTimeoutMs);
    watch(method, arguments, context, handler);
}

void BottleRepair::cancelRenewal(const QString& bottle) {
    setTimeout(LongTimeoutMs);
    const auto onAnswer = [bottle, hold = PendingWork::instance()->hold()](const BusResult& answer) {
        if (!answer.ok)
            qWarning().noquote() << "cannot cancel the repair of" << bottle << answer.errorMessage;
    };
    watch("cancelRenewal", {bottle}, this, onAnswer, BusReply::Wanted::Ignored);
}
