#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

/// Readers of a bottle's record, the JSON object that the service's get answers (the content of bottle.yml).
/// Each takes one key at the point of use; a missing key, and so an unknown bottle's empty record, reads as
/// the default.
namespace BottleRecord {

QString path(const QJsonObject& record);         ///< absolute directory; empty: no usable directory
QString runner(const QJsonObject& record);       ///< Wine runner in use
QString windows(const QJsonObject& record);      ///< Windows version code
QString application(const QJsonObject& record);  ///< for which a manifest set it up; untrusted, else empty
QString dxvk(const QJsonObject& record);         ///< empty: disabled
QString vkd3d(const QJsonObject& record);        ///< empty: disabled
QJsonObject parameters(const QJsonObject& record);
QJsonObject programs(const QJsonObject& record);               ///< program id to program record
bool hasPrograms(const QJsonObject& record);                   ///< whether the key is there at all
QStringList installedDependencies(const QJsonObject& record);  ///< without empty names

int customDpi(const QJsonObject& record);     ///< 96 to 480; 0 when absent
QString renderer(const QJsonObject& record);  ///< "gl", "vulkan" or "gdi"
bool cpuRendering(const QJsonObject& record);
bool ntsync(const QJsonObject& record);

// Old bottles lack these two keys; the caller decides what that means.
bool hasDiscreteGpu(const QJsonObject& record);
bool discreteGpu(const QJsonObject& record);
bool hasMemOptimized(const QJsonObject& record);
bool memOptimized(const QJsonObject& record, bool whenAbsent);

}  // namespace BottleRecord
