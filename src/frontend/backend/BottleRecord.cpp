#include "backend/BottleRecord.h"

#include <QJsonArray>

#include "backend/BusResult.h"

namespace BottleRecord {

QString path(const QJsonObject& record) {
    return record.value("Path").toString();
}
QString runner(const QJsonObject& record) {
    return record.value("Runner").toString();
}
QString windows(const QJsonObject& record) {
    return record.value("Windows").toString();
}
QString application(const QJsonObject& record) {
    return record.value("Application").toString().simplified();
}
QString dxvk(const QJsonObject& record) {
    return record.value("DXVK").toString();
}
QString vkd3d(const QJsonObject& record) {
    return record.value("VKD3D").toString();
}
QJsonObject parameters(const QJsonObject& record) {
    return record.value("Parameters").toObject();
}
QJsonObject programs(const QJsonObject& record) {
    return record.value("External_Programs").toObject();
}
bool hasPrograms(const QJsonObject& record) {
    return record.value("External_Programs").isObject();
}

QStringList installedDependencies(const QJsonObject& record) {
    QStringList names = BusResult::stringsOf(record.value("Installed_Dependencies").toArray());
    names.removeAll(QString());
    return names;
}

int customDpi(const QJsonObject& record) {
    return parameters(record).value("custom_dpi").toInt();
}
QString renderer(const QJsonObject& record) {
    return parameters(record).value("renderer").toString();
}
bool cpuRendering(const QJsonObject& record) {
    return parameters(record).value("cpu_rendering").toBool();
}
bool ntsync(const QJsonObject& record) {
    return parameters(record).value("ntsync").toBool();
}
bool hasDiscreteGpu(const QJsonObject& record) {
    return parameters(record).contains("discrete_gpu");
}
bool discreteGpu(const QJsonObject& record) {
    return parameters(record).value("discrete_gpu").toBool();
}
bool hasMemOptimized(const QJsonObject& record) {
    return parameters(record).contains("mem_optimized");
}
bool memOptimized(const QJsonObject& record, bool whenAbsent) {
    return parameters(record).value("mem_optimized").toBool(whenAbsent);
}

}  // namespace BottleRecord
