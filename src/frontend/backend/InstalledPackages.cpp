#include "backend/InstalledPackages.h"

#include <QDebug>
#include <QProcess>

#include "backend/MachineUtils.h"

namespace {

const int kTimeoutMs = 30000;

/// The output of dpkg-query; empty, with a warning, when it didn't end by itself. An exit code other than 0
/// only says that one of the names is unknown.
QString dpkgQuery(const QStringList& arguments) {
    QProcess process;
    process.setProcessEnvironment(MachineUtils::cLocaleEnvironment());
    process.start("dpkg-query", arguments);
    if (process.waitForStarted(kTimeoutMs) && process.waitForFinished(kTimeoutMs) &&
        process.exitStatus() == QProcess::NormalExit)
        return QString::fromLocal8Bit(process.readAllStandardOutput());
    qWarning().noquote() << "dpkg-query failed:" << process.errorString();
    process.kill();
    process.waitForFinished(1000);
    return {};
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
