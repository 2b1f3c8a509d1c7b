#include "store/install/SetupAppInfo.h"

#include "backend/TextUtils.h"
#include "store/install/ManifestFacts.h"
#include "store/records/VeskClientAppInfo.h"

SetupAppInfo SetupAppInfo::of(const OpenAPI::VeskClientAppInfo& app, const ManifestFacts& manifest) {
    return {app.getAppName(),
            app.getPackageVersion(),
            app.getOfficialSite(),
            app.getDownloadUrl().isEmpty() ? manifest.downloadUrl : app.getDownloadUrl(),
            app.getPackageSize() > 0 ? TextUtils::formatSize(app.getPackageSize()) : QString(),
            app.getDevName(),
            app.getDevEmail(),
            manifest.winePackage,
            manifest.wineDependencies};
}
