#pragma once

#include "store/records/VeskClientRecord.h"

namespace OpenAPI {

#define VESK_CLIENT_APP_INFO_FIELDS(VALUE, FLAG)   \
    VALUE(qint64, appId, AppId)                    \
    VALUE(QString, appInfoId, AppInfoId)           \
    VALUE(QString, appName, AppName)               \
    VALUE(QString, iconSaveKey, IconSaveKey)       \
    VALUE(qint64, packageSize, PackageSize)        \
    VALUE(QString, packageVersion, PackageVersion) \
    VALUE(QString, briefInfo, BriefInfo)           \
    VALUE(QString, descInfo, DescInfo)             \
    VALUE(qint32, score, Score)                    \
    VALUE(qint32, recommend, Recommend)            \
    VALUE(QString, devName, DevName)               \
    VALUE(QString, devEmail, DevEmail)             \
    VALUE(QString, officialSite, OfficialSite)     \
    VALUE(QString, downloadUrl, DownloadUrl)

/// One application of the store.
class VeskClientAppInfo : public VeskClientObject {
    VESK_CLIENT_RECORD(VeskClientAppInfo, VESK_CLIENT_APP_INFO_FIELDS)
};

}  // namespace OpenAPI

Q_DECLARE_METATYPE(OpenAPI::VeskClientAppInfo)
