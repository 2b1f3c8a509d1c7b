#pragma once

#include <QString>

namespace OpenAPI {
class VeskClientAppInfo;
}
struct ManifestFacts;

/// What the set-up dialog shows of an application: plain texts, all untrusted. What the record does not tell
/// is the manifest's.
struct SetupAppInfo {
    QString appName;
    QString version;
    QString officialSite;
    QString downloadUrl;
    QString size;  ///< of the set-up program, for people; empty when it is not known
    QString contributor;
    QString contributorEmail;
    QString winePackage;
    QString wineDependencies;

    static SetupAppInfo of(const OpenAPI::VeskClientAppInfo& app, const ManifestFacts& manifest);
};
