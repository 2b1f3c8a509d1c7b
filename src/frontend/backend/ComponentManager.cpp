#include "backend/ComponentManager.h"

#include <QDebug>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPointer>

#include "backend/ComponentKind.h"
#include "backend/PendingWork.h"

namespace {

QStringList names(const QJsonObject& catalogue, const QString& kind, const char* state) {
    QStringList result;
    for (const QJsonValue& name : catalogue.value(kind).toObject().value(QLatin1String(state)).toArray())
        result.append(name.toString());
    return result;
}

}  // namespace

ComponentManager::ComponentManager() : ServiceProxy("Components", LongTimeoutMs) {
    connect(this, &ComponentManager::refresh, this, &ComponentManager::onRefresh);
}

void ComponentManager::update(QObject* context, const std::function<void()>& then) {
    watch("list", {}, context, [this, then](const BusResult& result) {
        if (result.ok)
            read(result.object());
        else
            qWarning("Failed to get components list");
        then();
    });
}

void ComponentManager::whenKnown(QObject* context, const std::function<void()>& then) {
    if (knownRunners().isEmpty())
        update(context, then);
    else
        then();
}

void ComponentManager::onRefresh(const QString& components) {
    qInfo("--- Refresh components list");
    read(QJsonDocument::fromJson(components.toUtf8()).object());
}

void ComponentManager::read(const QJsonObject& catalogue) {
    runnerInstalled = names(catalogue, ComponentKind::runner(), "installed");
    runnerSupported = names(catalogue, ComponentKind::runner(), "supported");
    dxvkInstalled = names(catalogue, ComponentKind::dxvk(), "installed");
    dxvkSupported = names(catalogue, ComponentKind::dxvk(), "supported");
    vkd3dInstalled = names(catalogue, ComponentKind::vkd3d(), "installed");
    vkd3dSupported = names(catalogue, ComponentKind::vkd3d(), "supported");
}

void ComponentManager::install(const QString& kind, const QString& name, QObject* context,
                               const Handler& handler) {
    const QPointer<QObject> guard(context);
    watch("install", {kind, name}, this, [this, name, guard, handler](const BusResult& result) {
        if (result.ok)
            qInfo().noquote() << result.text;
        const auto tell = [guard, handler, result] {
            if (guard)
                handler(result);
        };
        const bool isGood = result.ok && result.object().value("ok").toBool();
        if (isGood && !runnerInstalled.contains(name)) {
            update(this, tell);
            return;
        }
        tell();  // the lists have it already, or nothing has changed
        if (isGood)
            update(this, [] {});
    });
}

void ComponentManager::cancelInstall(const QString& kind, const QString& name) {
    const auto onAnswer = [name, hold = PendingWork::instance()->hold()](const BusResult& answer) {
        if (!answer.ok)
            qWarning().noquote() << "cannot cancel the installation of" << name << answer.errorMessage;
    };
    watch("cancelInstall", {kind, name}, this, onAnswer, BusReply::Wanted::Ignored);
}

QStringList ComponentManager::knownRunners() const {
    QStringList known = runnerInstalled;
    for (const QString& name : runnerSupported) {
        if (!known.contains(name))
            known.append(name);
    }
    return known;
}
