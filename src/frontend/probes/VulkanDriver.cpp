#include "core/base/ToolProcess.h"
#include "probes/DxChecker.h"
#include "probes/HardwareInfo.h"
#include "probes/MachineUtils.h"

bool vulkanDriverComplete() {
    GraphicsVerdicts::DriverQueries queries;
    queries.loaderPolicy = [] {
        return ToolProcess::run("apt", {"policy", "libvulkan1:i386"}, ToolProcess::DefaultTimeoutMs,
                                englishProcessEnvironment())
            .standardOutput;
    };
    queries.gpus = [] { return hardwareInfo()["gpus"].toArray(); };
    queries.installed = [](const QStringList& packages, QByteArray* error) {
        const auto result = ToolProcess::runQuietly("dpkg", QStringList{"-s"} + packages);
        *error = result.standardError;
        return result.succeeded();
    };
    return GraphicsVerdicts::driversComplete(queries);
}
