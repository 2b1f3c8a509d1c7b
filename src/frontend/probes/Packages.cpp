#include "probes/Packages.h"

#include <QRegularExpression>

#include "core/base/ToolProcess.h"
#include "probes/MachineUtils.h"

namespace {

ToolProcess::Result run(const QString& program, const QStringList& arguments) {
    return ToolProcess::run(program, arguments, ToolProcess::DefaultTimeoutMs, englishProcessEnvironment());
}

}  // namespace

// dpkg-query ends with an error when one of the names is unknown; it has listed the others all the same.
QStringList installedPackages(const QStringList& packages) {
    const auto result = run("dpkg-query", QStringList{"-W", "-f=${Package}|${Status}\\n", "--"} + packages);
    return parseInstalledPackages(QString::fromUtf8(result.standardOutput));
}

QStringList parseInstalledPackages(const QString& output) {
    QStringList result;
    for (const QString& line : output.split('\n')) {
        const QStringList fields = line.split('|');
        if (fields.value(1) == "install ok installed" && !result.contains(fields.first()))
            result.append(fields.first());
    }
    return result;
}

QString packageVersion(const QString& package) {
    QString version =
        parsePackageVersion(QString::fromUtf8(run("dpkg", {"-s", "--", package}).standardOutput));
    // "dpkg -s" refuses a name that several architectures have; all that are installed have the same version.
    if (version.isEmpty())
        packageInstalled(package, &version);
    return version;
}

QString parsePackageVersion(const QString& status) {
    for (const QString& line : status.split('\n')) {
        if (line.startsWith("Version:"))
            return line.section(':', 1).trimmed();
    }
    return {};
}

bool packageInstalled(const QString& package, QString* version) {
    const auto result = run("dpkg-query", {"-W", "-f=${Status} ${Version}", "--", package});
    const QString found = parseInstalledVersion(QString::fromUtf8(result.standardOutput));
    if (!result.succeeded() || found.isEmpty())
        return false;
    if (version)
        *version = found;
    return true;
}

QString parseInstalledVersion(const QString& output) {
    static const QRegularExpression installed(
        "install ok installed (\\S+?)(?=(?:unknown|install|hold|deinstall|purge) |$)");
    return installed.match(output).captured(1);
}

bool packageAvailable(const QString& package) {
    static const QRegularExpression name("\\A[a-z0-9][a-z0-9+.-]+\\z");
    return name.match(package).hasMatch() &&
           parseHasCandidate(QString::fromUtf8(run("apt-cache", {"policy", package}).standardOutput));
}

bool parseHasCandidate(const QString& policy) {
    static const QRegularExpression candidate("^\\s+Candidate: *(?!\\(none\\))\\S",
                                              QRegularExpression::MultilineOption);
    return candidate.match(policy).hasMatch();
}
