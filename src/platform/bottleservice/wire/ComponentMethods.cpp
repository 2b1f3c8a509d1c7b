#include "bottleservice/wire/ComponentMethods.h"

#include <QJsonObject>
#include <limits>

#include "bottleservice/bottles/JsonText.h"
#include "bottleservice/requests/BottleComponentRequests.h"
#include "bottleservice/requests/ComponentRequests.h"
#include "bottleservice/requests/DependencyRequests.h"
#include "bottleservice/wire/ResultObject.h"
#include "bottleservice/wire/TextMethods.h"

namespace {

/// Received, total and status as the contract has them: bytes in 32 bits, which more than 4 GiB only fill.
QVariantList progressOf(qint64 received, qint64 total) {
    const auto told = [](qint64 bytes) {
        return uint(qBound<qint64>(0, bytes, std::numeric_limits<quint32>::max()));
    };
    return {told(received), told(total), QString(total > 0 && received >= total ? "done" : "downloading")};
}

}  // namespace

ComponentsObject::ComponentsObject(ComponentRequests* requests, QObject* parent)
    : BusObject("/com/lumora/Manager/Components", ":/wire/com.lumora.Manager.Components.xml", parent) {
    handle("list", [requests](const QVariantList&, const Reply& reply) { reply(requests->list()); });
    handleTwoTexts<ComponentRequests>(
        this, requests,
        {{"install", &ComponentRequests::install}, {"cancelInstall", &ComponentRequests::cancelInstall}});
    connect(requests, &ComponentRequests::progress, this,
            [this](const QString& kind, const QString& name, qint64 received, qint64 total) {
                emitSignal("updateProgress", QVariantList{kind, name} + progressOf(received, total));
            });
    connect(requests, &ComponentRequests::installed, this,
            [this](const QString& kind, const QString& name, const Reason& reason) {
                emitSignal("installed", {int(reason.isEmpty()), kind, name, reason.text()});
            });
    connect(requests, &ComponentRequests::catalogueChanged, this,
            [this](const QString& catalogue) { emitSignal("refresh", {catalogue}); });
}

void addComponentMethods(BusObject* object, BottleComponentRequests* requests) {
    const std::pair<const char*, const char*> setters[] = {
        {"setRunner", "runner"}, {"setDxvk", "dxvk"}, {"setVkD3D", "vkd3d"}};
    for (const auto& [method, kind] : setters) {
        object->handle(method, [requests, kind = kind](const QVariantList& arguments, const Reply& reply) {
            requests->setComponent(arguments[0].toString(), kind, arguments[1].toString(), reply);
        });
    }
    handleTwoTexts<BottleComponentRequests>(
        object, requests, {{"getInstallingComponents", &BottleComponentRequests::installing}});
    object->handle("cancelInstallingComponent", [requests](const QVariantList& arguments,
                                                           const Reply& reply) {
        requests->cancel(arguments[0].toString(), arguments[1].toString(), arguments[2].toString(), reply);
    });
    QObject::connect(requests, &BottleComponentRequests::waiting, object,
                     [object](const QString& bottle, const QString& kind, const QString& name) {
                         object->emitSignal("component_waiting_downloaded", {bottle, kind, name});
                     });
    QObject::connect(requests, &BottleComponentRequests::setupStarted, object,
                     [object](const QString& bottle, const QString& kind, const QString& name) {
                         object->emitSignal("component_setup_start", {bottle, kind, name});
                     });
    QObject::connect(
        requests, &BottleComponentRequests::setupDone, object,
        [object](const QString& bottle, const QString& kind, const QString& name, const Answer& result) {
            object->emitSignal("component_setup_done",
                               {bottle, kind, name, JsonText::compact(resultOf(result))});
        });
}

void addDependencyMethods(BusObject* object, DependencyRequests* requests) {
    handleTwoTexts<DependencyRequests>(object, requests,
                                       {{"installDependency", &DependencyRequests::install},
                                        {"reinstallDependency", &DependencyRequests::install}});
    handleOneText<DependencyRequests>(object, requests,
                                      {{"cancelInstallingDependency", &DependencyRequests::cancel},
                                       {"getInstallingDependency", &DependencyRequests::installing}});
    QObject::connect(requests, &DependencyRequests::progress, object,
                     [object](const QString& bottle, const QString& name, qint64 received, qint64 total) {
                         object->emitSignal("dependencyDownloadProgress",
                                            QVariantList{bottle, name} + progressOf(received, total));
                     });
    QObject::connect(requests, &DependencyRequests::described, object,
                     [object](const QString& bottle, const QString& name, const QString& text) {
                         object->emitSignal("dependencySetupDescription", {bottle, name, text});
                     });
    QObject::connect(requests, &DependencyRequests::stepDone, object,
                     [object](const QString& bottle, const QString& name, int done, int total) {
                         object->emitSignal("dependencySetupStepNotify", {bottle, name, done, total});
                     });
    QObject::connect(requests, &DependencyRequests::done, object,
                     [object](const QString& bottle, const QString& name, const Answer& result) {
                         QJsonObject told = resultOf(result);
                         if (!result.text.isEmpty())
                             told.insert("data", result.text);
                         object->emitSignal("dependencySetupDone", {bottle, name, JsonText::compact(told)});
                     });
}
