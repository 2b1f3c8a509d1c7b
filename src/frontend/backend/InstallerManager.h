#pragma once

#include "backend/ServiceProxy.h"

/// The client of the background service's installer of manifests; holds no state. Lives in the GUI thread.
class InstallerManager : public ServiceProxy<InstallerManager> {
    Q_OBJECT
    friend class Fenk::Singleton<InstallerManager>;

public:
    /// Makes the bottle as the manifest says, which is YAML in Base64. Ends in setupSuccessed() or
    /// setupFailed(). The optional handler gets the end of the call itself: a service that can't be reached
    /// sends no signal.
    void setupYaml(const QString& bottleId, const QString& yamlBase64, QObject* context = nullptr,
                   const Handler& handler = {});
    void cancelSetup(const QString& bottleId) { fire("cancelSetup", {bottleId}); }

Q_SIGNALS:
    // From the bus, under these names. The first argument is the bottle id that setupYaml() was given.
    void setupSuccessed(const QString& bottle_name);
    /// resultObject is the text of a JSON object with the key "error".
    void setupFailed(const QString& bottle_name, const QString& resultObject);
    void setupTitleChanged(const QString& bottle_name, const QString& title);
    /// Lines of level 0 are for the log, too.
    void setupDescriptionChanged(const QString& bottle_name, const QString& desc, int level);
    void setupProgressChanged(const QString& bottle_name, int curStep, int totalSteps);

private:
    InstallerManager() : ServiceProxy("InstallerManager", LongTimeoutMs) {}
};
