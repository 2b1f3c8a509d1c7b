#include "feedback/client/VersionQuery.h"

#include "backend/EmulatorPackage.h"
#include "backend/InBackground.h"
#include "feedback/client/BottleQuery.h"
#include "probes/MachineUtils.h"

bool VersionQuery::needsEmulator(const QString& architecture) {
    return architecture.contains("arm") || architecture.contains("loongarch");
}

void VersionQuery::ask(const QString& bottleName, QObject* context, const Handler& handler) {
    BottleQuery::ask(bottleName, context, [bottleName, context, handler](const BusResult& result) {
        static const bool isEmulated = needsEmulator(MachineUtils::cpuArchitecture());
        const QJsonObject record = result.object();
        const BottleVersions versions = BottleVersions::of(bottleName, record);
        if (!isEmulated || record.isEmpty()) {
            handler(versions, record);
            return;
        }
        callServiceAsync(
            context, [bottleName] { return EmulatorPackage::describe(bottleName); },
            [versions, record, handler](const QString& emulator) {
                BottleVersions all = versions;
                all.emulatorVersion = emulator;
                handler(all, record);
            });
    });
}
