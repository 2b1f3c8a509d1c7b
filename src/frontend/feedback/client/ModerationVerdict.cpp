#include "feedback/client/ModerationVerdict.h"

#include <QJsonDocument>
#include <QJsonObject>

bool ModerationVerdict::isRefused(const QString& reply) {
    const QJsonObject data = QJsonDocument::fromJson(reply.toUtf8()).object().value("Data").toObject();
    return data.contains("RiskLevel") && data.value("RiskLevel").toString() != QLatin1String("none");
}
