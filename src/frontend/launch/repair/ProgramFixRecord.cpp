#include "launch/repair/ProgramFixRecord.h"

#include <QJsonArray>

namespace {

const QLatin1String BottleKey("bottlesName");
const QLatin1String UuidKey("uuid");
const QLatin1String ComponentsKey("missingComponents");
const QLatin1String LogsKey("parsedLogs");

QStringList texts(const QJsonValue& array) {
    QStringList list;
    for (const QJsonValue& value : array.toArray())
        list << value.toString();
    return list;
}

}  // namespace

QJsonObject ProgramFixRecord::toJson(const ProgramFixRecord& record) {
    return {{BottleKey, record.bottlesName},
            {UuidKey, record.uuid},
            {ComponentsKey, QJsonArray::fromStringList(record.missingComponents)},
            {LogsKey, QJsonArray::fromStringList(record.parsedLogs)}};
}

ProgramFixRecord ProgramFixRecord::fromJson(const QJsonObject& object) {
    return {object.value(BottleKey).toString(), object.value(UuidKey).toString(),
            texts(object.value(ComponentsKey)), texts(object.value(LogsKey))};
}
