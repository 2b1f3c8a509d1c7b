#include "bottleservice/wire/InstallerObject.h"

#include <QJsonObject>

#include "bottleservice/bottles/JsonText.h"
#include "bottleservice/requests/SetupRequests.h"
#include "bottleservice/wire/ResultObject.h"
#include "bottleservice/wire/TextMethods.h"

namespace {

constexpr int MaximumNameCharacters = 4096;  // far more than a bottle's name can have

}  // namespace

InstallerObject::InstallerObject(SetupRequests* requests, QObject* parent)
    : BusObject("/com/lumora/Manager/InstallerManager", ":/wire/com.lumora.Manager.InstallerManager.xml",
                parent) {
    handleTwoTexts<SetupRequests>(this, requests, {{"setupYaml", &SetupRequests::setup}});
    handleOneText<SetupRequests>(this, requests, {{"cancelSetup", &SetupRequests::cancel}});
    // A client that does not look at replies waits for a signal.
    connect(this, &BusObject::refused, requests,
            [requests](const QString& method, const QVariantList& arguments, const Answer& verdict) {
                const QString bottle = arguments.value(0).toString();
                if (method == "setupYaml" && bottle.size() <= MaximumNameCharacters)
                    requests->refuse(bottle, verdict);
            });
    connect(requests, &SetupRequests::succeeded, this,
            [this](const QString& bottle) { emitSignal("setupSuccessed", {bottle}); });
    connect(requests, &SetupRequests::failed, this,
            [this](const QString& bottle, const Answer& result, bool isCancelled) {
                QJsonObject object = resultOf(result);
                if (isCancelled)
                    object.insert("cancelled", true);
                emitSignal("setupFailed", {bottle, JsonText::compact(object)});
            });
    connect(requests, &SetupRequests::titleChanged, this,
            [this](const QString& bottle, const QString& title) {
                emitSignal("setupTitleChanged", {bottle, title});
            });
    connect(requests, &SetupRequests::described, this,
            [this](const QString& bottle, const QString& text, int level) {
                emitSignal("setupDescriptionChanged", {bottle, text, level});
            });
    connect(requests, &SetupRequests::progressChanged, this,
            [this](const QString& bottle, int step, int steps) {
                emitSignal("setupProgressChanged", {bottle, step, steps});
            });
}
