#pragma once

#include <QJsonObject>

#include "bottleservice/result/Answer.h"

/// The object in which signals tell a result: "ok"; on failure also "error" (English), "reasons" (see
/// com.lumora.Manager.Repair.xml) and, where programs in the bottle are the reason, their names as "busy".
inline QJsonObject resultOf(const Answer& answer) {
    QJsonObject result{{"ok", answer.isGood()}};
    if (!answer.isGood()) {
        result.insert("error", answer.reason.text());
        result.insert("reasons", answer.reason.toJson());
    }
    if (!answer.running.isEmpty())
        result.insert("busy", QJsonArray::fromStringList(answer.running));
    return result;
}
