#include "probes/HardwareInfo.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include "core/base/ToolProcess.h"
#include "probes/MachineUtils.h"
#include "probes/Packages.h"

namespace {

constexpr qint64 MaximumFileBytes = 4096;

QString outputOf(const QString& program, const QStringList& arguments = {}) {
    const auto result =
        ToolProcess::run(program, arguments, ToolProcess::DefaultTimeoutMs, englishProcessEnvironment());
    return QString::fromUtf8(result.standardOutput);
}

QString contentOf(const QString& path) {
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.read(MaximumFileBytes)).trimmed();
}

}  // namespace

QJsonArray parseGraphicsDevices(const QString& lspci) {
    static const QRegularExpression device("^\\w+:\\w+");
    static const QRegularExpression graphics("^\\w+:\\w+.*((Display controller)|VGA|3D).*");
    static const QString driver = "Kernel driver in use: ";
    QJsonArray devices;
    QJsonObject pending;
    const auto finish = [&] {
        if (!pending.isEmpty())
            devices.append(pending);
        pending = {};
    };
    for (const QString& line : lspci.split('\n')) {
        const QString text = line.trimmed();
        if (graphics.match(text).hasMatch()) {
            finish();
            const int colon = text.indexOf(": ");
            pending = {{"gpu", colon < 0 ? QString() : text.mid(colon + 2).trimmed()}, {"module", ""}};
        } else if (device.match(line).hasMatch()) {
            // Another kind of device begins at the margin; its driver is not the graphics device's.
            finish();
        } else if (!pending.isEmpty() && text.contains(driver)) {
            pending["module"] = text.mid(text.indexOf(driver) + driver.size());
        }
    }
    finish();
    return devices;
}

QString parseCpuModel(const QString& lscpu) {
    for (const QString& line : lscpu.split('\n')) {
        if (line.startsWith("Model name:"))
            return line.section(':', 1).trimmed();
    }
    return {};
}

QString upstreamVersion(const QString& debianVersion) {
    return debianVersion.section(':', -1).section('-', 0, 0);
}

QJsonObject hardwareInfo() {
    return {{"gpus", parseGraphicsDevices(outputOf("lspci", {"-vv"}))},
            {"cpu", parseCpuModel(outputOf("lscpu"))},
            {"nvidia", contentOf("/sys/module/nvidia/version")},
            {"mesa", upstreamVersion(packageVersion("libglx-mesa0"))}};
}

QString machineId() {
    return contentOf("/etc/machine-id");
}

QJsonObject machineInfo() {
    static const QJsonObject machine = {{"hardware", hardwareInfo()},
                                        {"os", MachineUtils::osVersion()},
                                        {"arch", MachineUtils::cpuArchitecture()},
                                        {"machine_id", machineId()}};
    return machine;
}
