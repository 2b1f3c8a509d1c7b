#include "store/install/SetupAppInfo.h"

#include "backend/TextUtils.h"
#include "store/install/ManifestFacts.h"
#include "store/records/VeskClientAppInfo.h"

SetupAppInfo SetupAppInfo::of(const OpenAPI::VeskClientAppInfo& app, const ManifestFacts& manifest) {
    const qint64 bytes = app.getPackageSize() > 0 ? app.getPackageSize() : manifest.setupBytes;
    return {app.getAppName(),
            app.getPackageVersion(),
            app.getOfficialSite(),
            app.getDownloadUrl().isEmpty() ? manifest.downloadUrl : app.getDownloadUrl(),
            bytes > 0 ? TextUtils::formatSize(bytes) : QString(),
            app.getDevName(),
            app.getDevEmail(),
            manifest.winePackage,
            manifest.wineDependencies};
}
