#include "store/install/SetupAppInfo.h"

#include "backend/TextUtils.h"
#include "store/install/ManifestFacts.h"
#include "store/records/VeskClientAppInfo.h"

SetupAppInfo SetupAppInfo::of(const OpenAPI::VeskClientAppInfo& app, const ManifestFacts& manifest) {
    const qint64 bytes = app.getPackageSize() > 0 ? app.getPackageSize() : manifest.setupBytes;
    const auto either = [](const QString& told, const QString& other) {
        return told.isEmpty() ? other : told;
    };
    return {either(app.getAppName(), manifest.name),
            either(app.getPackageVersion(), manifest.version),
            app.getOfficialSite(),
            either(app.getDownloadUrl(), manifest.downloadUrl),
            bytes > 0 ? TextUtils::formatSize(bytes) : QString(),
            either(app.getDevName(), manifest.contributor),
            either(app.getDevEmail(), app.getDevName().isEmpty() ? manifest.contributorEmail : QString()),
            manifest.winePackage,
            manifest.wineDependencies};
}
