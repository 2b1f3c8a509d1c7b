#include "backend/InstallerManager.h"

void InstallerManager::setupYaml(const QString& bottleId, const QString& yamlBase64, QObject* context,
                                 const Handler& handler) {
    if (context)
        watch("setupYaml", {bottleId, yamlBase64}, context, handler, BusReply::Wanted::Ignored);
    else
        fire("setupYaml", {bottleId, yamlBase64});
}
