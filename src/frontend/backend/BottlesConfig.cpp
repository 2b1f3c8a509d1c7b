#include "backend/BottlesConfig.h"

#include <QDebug>
#include <QJsonDocument>

#include "backend/BottleRecord.h"
#include "backend/FileInfoCache.h"
#include "backend/ProgramRecord.h"

namespace {

QJsonObject objectOrWarning(const BusResult& result, const char* warning) {
    if (!result.ok)
        qWarning("%s", warning);
    return result.object();
}

QVariantList scanArguments(const QString& bottle, const QDateTime& since) {
    return {bottle, qlonglong(since.toMSecsSinceEpoch() / 1000), true};
}

}  // namespace

BottlesConfig::BottlesConfig() : ServiceProxy("Bottles", LongTimeoutMs) {
    connect(this, &BottlesConfig::dependencySetupDone, this, &BottlesConfig::onDependencySetupDone);
}

void BottlesConfig::onDependencySetupDone(const QString& bottleName, const QString& dependencyName,
                                          const QString& result) {
    Q_EMIT dependecyInstalled(bottleName, dependencyName, QJsonDocument::fromJson(result.toUtf8()).object());
}

void BottlesConfig::fireOrWatch(const QString& method, const QVariantList& arguments, QObject* context,
                                const Handler& handler) {
    if (context)
        watch(method, arguments, context, handler, Ignored);
    else
        fire(method, arguments);
}

QStringList BottlesConfig::list() {
    const BusResult result = block("list");
    if (!result.ok)
        qWarning("Failed to fetch bottles list.");
    return result.strings();
}

QJsonObject BottlesConfig::get(const QString& bottle) {
    return objectOrWarning(block("get", {bottle}), "Failed to fetch bottles config.");
}

std::optional<QJsonObject> BottlesConfig::getInLoop(const QString& bottle, QObject* owner) {
    const BusResult result = loop("get", {bottle}, owner);
    if (result.abandoned)
        return {};
    return objectOrWarning(result, "Failed to fetch bottles config.");
}

void BottlesConfig::createBottles(const QString& bottle, const QString& runner) {
    watch("createBottles", {bottle, runner}, this, [this, bottle](const BusResult& result) {
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

EmulatorsInfo BottlesConfig::getEmulators(const QString& bottle) {
    return EmulatorsInfo::fromObject(
        objectOrWarning(block("getEmulators", {bottle}), "Failed to fetch emulators info."));
}

QJsonObject BottlesConfig::getInstallingComponents(const QString& bottle, const QString& kind) {
    return objectOrWarning(block("getInstallingComponents", {bottle, kind}),
                           "Failed to fetch bottles config.");
}

QString BottlesConfig::getInstallingDependency(const QString& bottle) {
    const BusResult result = block("getInstallingDependency", {bottle});
    qDebug().noquote().nospace() << result.ok << "::" << result.errorMessage << "::" << result.text;
    return result.text;
}

BusResult BottlesConfig::updateExternalProgram(const QString& bottle, const QJsonObject& record) {
    return block("updateExternalProgram", {bottle, ProgramRecord::toText(record)}, Ignored);
}

void BottlesConfig::fireUpdateExternalProgram(const QString& bottle, const QJsonObject& record) {
    fire("updateExternalProgram", {bottle, ProgramRecord::toText(record)});
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
    return block("removeExternalProgram", {bottle, programId}, Ignored);
}

QJsonArray BottlesConfig::scanApplicationLinks(const QString& bottle, const QDateTime& since,
                                               QObject* owner) {
    const BusResult result = loop("scanApplicationLinks", scanArguments(bottle, since), owner);
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
    watch("scanApplicationLinks", scanArguments(bottle, since), context, handler);
}

void BottlesConfig::killProgram(const QString& bottle, const QString& programId) {
    Q_EMIT endRequested(bottle, programId);
    fire("killProgram", {bottle, programId});
}

void BottlesConfig::killWineServer(const QString& bottle, QObject* context, const Handler& handler) {
    Q_EMIT endRequested(bottle, {});
    fireOrWatch("killWineServer", {bottle}, context, handler);
}
