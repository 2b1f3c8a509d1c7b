#include "backend/OfflineDependency.h"

#include <QDebug>
#include <QJsonDocument>
#include <QPointer>

#include "backend/PendingWork.h"

OfflineDependency::OfflineDependency() : ServiceProxy("OfflineDependency", LongTimeoutMs) {
    connect(this, &OfflineDependency::notifyProgress, this, [this](const QString& type, const QString& info) {
        Q_EMIT progressNotified(type, QJsonDocument::fromJson(info.toUtf8()).object());
    });
}

void OfflineDependency::begin(const QString& method, const QVariantList& arguments, QObject* context,
                              const Handler& handler) {
    const QPointer<QObject> guard(context);
    const auto onAnswer = [=, hold = PendingWork::instance()->hold()](const BusResult& answer) {
        if (!answer.ok)
            qWarning().noquote() << method << "failed:" << answer.errorMessage;
        if (guard)
            handler(answer);
    };
    watch(method, arguments, this, onAnswer, BusReply::Wanted::Ignored);
}
