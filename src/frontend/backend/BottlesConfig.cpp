#include "backend/BottlesConfig.h"

#include <QDBusConnection>
#include <QDebug>
#include <QJsonDocument>

#include "backend/BottleRecord.h"
#include "backend/FileInfoCache.h"
#include "backend/ProgramRecord.h"

namespace {

const int kTimeoutMs = 3600000;
const auto kIgnored = BusReply::Wanted::Ignored;

QJsonObject objectOrWarning(const BusResult& result, const char* warning) {
    if (!result.ok)
        qWarning("%s", warning);
    return result.object();
}

QVariantList scanArguments(const QString& bottle, const QDateTime& since) {
    return {bottle, qlonglong(since.toMSecsSinceEpoch() / 1000), true};
}

}  // namespace

BottlesConfig::BottlesConfig()
    : QDBusAbstractInterface("com.lumora.LumoraWineLauncher", "/com/lumora/Manager/Bottles",
                             "com.lumora.Manager.Bottles", QDBusConnection::sessionBus(), nullptr) {
    setTimeout(kTimeoutMs);
    connect(this, &BottlesConfig::dependencySetupDone, this, &BottlesConfig::onDependencySetupDone);
}

void BottlesConfig::onDependencySetupDone(const QString& bottleName, const QString& dependencyName,
                                          const QString& result) {
    Q_EMIT dependecyInstalled(bottleName, dependencyName, QJsonDocument::fromJson(result.toUtf8()).object());
}

void BottlesConfig::fireOrWatch(const QString& method, const QVariantList& arguments, QObject* context,
                                const Handler& handler) {
    if (context)
        BusCall::watch(*this, method, arguments, context, handler, BusReply::Wanted::Ignored);
    else
        BusCall::fire(*this, method, arguments);
}

QStringList BottlesConfig::list() {
    const BusResult result = BusCall::block(*this, "list");
    if (!result.ok)
        qWarning("Failed to fetch bottles list.");
    return result.strings();
}

QJsonObject BottlesConfig::get(const QString& bottle) {
    return objectOrWarning(BusCall::block(*this, "get", {bottle}), "Failed to fetch bottles config.");
}

void BottlesConfig::watchBottle(const QString& bottle, QObject* context, const Handler& handler) {
    BusCall::watch(*this, "get", {bottle}, context, handler);
}

void BottlesConfig::createBottles(const QString& bottle, const QString& runner) {
    BusCall::watch(*this, "createBottles", {bottle, runner}, this, [this, bottle](const BusResult& result) {
        if (!result.ok) {
            qWarning("reply is invalid");
            Q_EMIT bottlesCreated(bottle, {{"ok", false}});
            return;
        }
        const QJsonObject object = result.object();
        qInfo() << "create bottles result: " << object;
        Q_EMIT bottlesCreated(bottle, object);
    });
}

void BottlesConfig::deleteBottle(const QString& bottle) {
    BusCall::fire(*this, "delete", {bottle});
}

BusResult BottlesConfig::deleteBottleAndWait(const QString& bottle) {
    return BusCall::block(*this, "delete", {bottle}, kIgnored);
}

EmulatorsInfo BottlesConfig::getEmulators(const QString& bottle) {
    return EmulatorsInfo::fromObject(
        objectOrWarning(BusCall::block(*this, "getEmulators", {bottle}), "Failed to fetch emulators info."));
}

void BottlesConfig::watchEmulators(const QString& bottle, QObject* context, const Handler& handler) {
    BusCall::watch(*this, "getEmulators", {bottle}, context, handler);
}

void BottlesConfig::setEmulator(const QString& bottle, const QString& emulator) {
    BusCall::fire(*this, "setEmulator", {bottle, emulator});
}

void BottlesConfig::setRunner(const QString& bottle, const QString& version, QObject* context,
                              const Handler& handler) {
    fireOrWatch("setRunner", {bottle, version, true}, context, handler);
}

void BottlesConfig::setDxvk(const QString& bottle, const QString& version) {
    BusCall::fire(*this, "setDxvk", {bottle, version, true});
}

void BottlesConfig::setVkD3D(const QString& bottle, const QString& version) {
    BusCall::fire(*this, "setVkD3D", {bottle, version, true});
}

QJsonObject BottlesConfig::getInstallingComponents(const QString& bottle, const QString& kind) {
    return objectOrWarning(BusCall::block(*this, "getInstallingComponents", {bottle, kind}),
                           "Failed to fetch bottles config.");
}

BusResult BottlesConfig::cancelInstallingComponent(const QString& bottle, const QString& kind,
                                                   const QString& name) {
    return BusCall::block(*this, "cancelInstallingComponent", {bottle, kind, name}, kIgnored);
}

void BottlesConfig::installDependency(const QString& bottle, const QString& dependency, QObject* context,
                                      const Handler& handler) {
    fireOrWatch("installDependency", {bottle, dependency}, context, handler);
}

void BottlesConfig::reinstallDependency(const QString& bottle, const QString& dependency) {
    BusCall::fire(*this, "reinstallDependency", {bottle, dependency});
}

QString BottlesConfig::getInstallingDependency(const QString& bottle) {
    const BusResult result = BusCall::block(*this, "getInstallingDependency", {bottle});
    qDebug().noquote().nospace() << result.ok << "::" << result.errorMessage << "::" << result.text;
    return result.text;
}

BusResult BottlesConfig::cancelInstallingDependency(const QString& bottle) {
    return BusCall::block(*this, "cancelInstallingDependency", {bottle}, kIgnored);
}

void BottlesConfig::cancelInstallingComponent(const QString& bottle, const QString& kind, const QString& name,
                                              QObject* context, const Handler& handler) {
    BusCall::watch(*this, "cancelInstallingComponent", {bottle, kind, name}, context, handler, kIgnored);
}

void BottlesConfig::cancelInstallingDependency(const QString& bottle, QObject* context,
                                               const Handler& handler) {
    BusCall::watch(*this, "cancelInstallingDependency", {bottle}, context, handler, kIgnored);
}

BusResult BottlesConfig::getRunnerVersion(const QString& runner) {
    return BusCall::block(*this, "getRunnerVersion", {runner});
}

void BottlesConfig::watchRunnerVersion(const QString& runner, QObject* context, const Handler& handler) {
    BusCall::watch(*this, "getRunnerVersion", {runner}, context, handler);
}

void BottlesConfig::setDPI(const QString& bottle, int dpi) {
    BusCall::fire(*this, "setDPI", {bottle, dpi});
}

void BottlesConfig::setCpuRendering(const QString& bottle, bool on) {
    BusCall::fire(*this, "setCpuRendering", {bottle, on});
}

void BottlesConfig::setDiscreteGpu(const QString& bottle, bool on) {
    BusCall::fire(*this, "setDiscreteGpu", {bottle, on});
}

void BottlesConfig::setMemOptimized(const QString& bottle, bool on) {
    BusCall::fire(*this, "setMemOptimized", {bottle, on});
}

void BottlesConfig::setNTSync(const QString& bottle, bool on) {
    BusCall::fire(*this, "setNTSync", {bottle, on});
}

void BottlesConfig::setD3dRenderer(const QString& bottle, const QString& renderer) {
    BusCall::fire(*this, "setD3dRenderer", {bottle, renderer});
}

void BottlesConfig::setWindowsVersion(const QString& bottle, const QString& version) {
    BusCall::fire(*this, "setWindowsVersion", {bottle, version});
}

void BottlesConfig::listDllOverrides(const QString& bottle, QObject* context, const Handler& handler) {
    BusCall::watch(*this, "listDllOverrides", {bottle}, context, handler);
}

void BottlesConfig::updateDllOverride(const QString& bottle, const QString& dll, const QString& method) {
    BusCall::fire(*this, "updateDllOverride", {bottle, dll, method, false});
}

void BottlesConfig::removeDllOverride(const QString& bottle, const QString& dll) {
    BusCall::fire(*this, "updateDllOverride", {bottle, dll, QString(""), true});
}

BusResult BottlesConfig::getExternalProgramsDllList(const QString& bottle) {
    return BusCall::block(*this, "getExternalProgramsDllList", {bottle});
}

BusResult BottlesConfig::getExternalProgramsUpdateExes(const QString& bottle) {
    return BusCall::block(*this, "getExternalProgramsUpdateExes", {bottle});
}

void BottlesConfig::listFontReplacements(const QString& bottle, QObject* context, const Handler& handler) {
    BusCall::watch(*this, "listFontReplacements", {bottle}, context, handler);
}

void BottlesConfig::addFontReplacements(const QString& bottle, const QString& font,
                                        const QString& replacement) {
    BusCall::fire(*this, "addFontReplacements", {bottle, font, replacement});
}

void BottlesConfig::removeFontReplacement(const QString& bottle, const QString& font) {
    BusCall::fire(*this, "removeFontReplacement", {bottle, font});
}

BusResult BottlesConfig::listAllPrograms(QObject* owner) {
    return BusCall::loop(*this, "listAllPrograms", {}, owner);
}

void BottlesConfig::watchAllPrograms(QObject* context, const Handler& handler) {
    BusCall::watch(*this, "listAllPrograms", {}, context, handler);
}

void BottlesConfig::listBottlesAllPrograms(const QString& bottle, QObject* context, const Handler& handler) {
    BusCall::watch(*this, "listBottlesAllPrograms", {bottle}, context, handler);
}

BusResult BottlesConfig::updateExternalProgram(const QString& bottle, const QJsonObject& record) {
    return BusCall::block(*this, "updateExternalProgram", {bottle, ProgramRecord::toText(record)}, kIgnored);
}

void BottlesConfig::fireUpdateExternalProgram(const QString& bottle, const QJsonObject& record) {
    BusCall::fire(*this, "updateExternalProgram", {bottle, ProgramRecord::toText(record)});
}

void BottlesConfig::forgetFileInfo(const QString& bottle, const QString& programId) {
    const QString path = BottleRecord::path(get(bottle));
    if (path.isEmpty())
        qWarning().noquote() << "no directory of bottle" << bottle << "to remove the file information from";
    else
        FileInfoCache(path).remove(programId);
}

BusResult BottlesConfig::removeExternalProgram(const QString& bottle, const QString& programId) {
    forgetFileInfo(bottle, programId);
    return BusCall::block(*this, "removeExternalProgram", {bottle, programId}, kIgnored);
}

QJsonArray BottlesConfig::scanApplicationLinks(const QString& bottle, const QDateTime& since,
                                               QObject* owner) {
    const BusResult result =
        BusCall::loop(*this, "scanApplicationLinks", scanArguments(bottle, since), owner);
    if (result.abandoned)
        return {};
    if (!result.ok) {
        qWarning().noquote().nospace() << "DBUS call failed: " << result.errorMessage;
        return {};
    }
    QJsonParseError error;
    const QJsonArray links = QJsonDocument::fromJson(result.text.toUtf8(), &error).array();
    if (error.error != QJsonParseError::NoError) {
        qWarning().noquote().nospace() << "Failed to parse JSON: " << error.errorString();
        return {};
    }
    qDebug() << "added lnks: " << links;
    return links;
}

void BottlesConfig::watchApplicationLinks(const QString& bottle, const QDateTime& since, QObject* context,
                                          const Handler& handler) {
    BusCall::watch(*this, "scanApplicationLinks", scanArguments(bottle, since), context, handler);
}

BusResult BottlesConfig::createDesktopEntry(const QString& bottle, const QString& programId) {
    return BusCall::block(*this, "createDesktopEntry", {bottle, programId}, kIgnored);
}

void BottlesConfig::killProgram(const QString& bottle, const QString& programId) {
    Q_EMIT endRequested(bottle, programId);
    BusCall::fire(*this, "killProgram", {bottle, programId});
}

void BottlesConfig::killWineServer(const QString& bottle, QObject* context, const Handler& handler) {
    Q_EMIT endRequested(bottle, {});
    fireOrWatch("killWineServer", {bottle}, context, handler);
}

void BottlesConfig::runCommand(const QString& bottle, const QString& commandLine) {
    BusCall::fire(*this, "run_command", {bottle, commandLine});
}

void BottlesConfig::exportFileAssociations(const QString& bottle, const QStringList& keys) {
    BusCall::fire(*this, "exportFileAssociations", {bottle, keys});
}

BusResult BottlesConfig::dumpManifest(const QString& json) {
    return BusCall::block(*this, "dumpManifest", {json});
}

BusResult BottlesConfig::checkPublicBottles(const QString& json) {
    return BusCall::block(*this, "checkPublicBottles", {json});
}
