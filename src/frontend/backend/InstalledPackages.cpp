#include "backend/InstalledPackages.h"

#include "backend/MachineUtils.h"
#include "core/base/ToolProcess.h"

namespace {

/// What dpkg-query prints, also when it ends with an error: that only says that one of the names is unknown.
QString dpkgQuery(const QStringList& arguments) {
    const ToolProcess::Result result = ToolProcess::run(
        "dpkg-query", arguments, ToolProcess::DefaultTimeoutMs, MachineUtils::cLocaleEnvironment());
    return QString::fromLocal8Bit(result.standardOutput);
}

}  // namespace

QStringList InstalledPackages::installed(const QStringList& names) {
    return parseInstalled(dpkgQuery(QStringList{"-W", "-f=${Package}|${Status}\\n", "--"} + names));
}

QStringList InstalledPackages::parseInstalled(const QString& output) {
    QStringList result;
    for (const QString& line : output.split('\n')) {
        const QStringList fields = line.split('|');
        if (fields.value(1) == "install ok installed")
            result.append(fields.first());
    }
    return result;
}

QString InstalledPackages::version(const QString& package) {
    const QString output = dpkgQuery({"-W", "-f=${Status} ${Version}", "--", package});
    return output.contains("install ok installed") ? output.section(' ', -1) : QString();
}
