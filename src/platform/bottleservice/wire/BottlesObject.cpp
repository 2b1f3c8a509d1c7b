#include "bottleservice/wire/BottlesObject.h"

#include "bottleservice/requests/BottleRequests.h"
#include "bottleservice/wire/TextMethods.h"

BottlesObject::BottlesObject(BottleRequests* requests, QObject* parent)
    : BusObject("/com/lumora/Manager/Bottles", ":/wire/com.lumora.Manager.Bottles.xml", parent) {
    handleReading(requests);
    handleChanging(requests);
    forwardSignals(requests);
}

void BottlesObject::handleReading(BottleRequests* requests) {
    handle("list", [requests](const QVariantList&, const Reply& reply) { reply(requests->list()); });
    using Reader = Answer (BottleRequests::*)(const QString&) const;
    const std::pair<const char*, Reader> readers[] = {
        {"get", &BottleRequests::get},
        {"getEmulators", &BottleRequests::getEmulators},
        {"checkPublicBottles", &BottleRequests::checkPublicBottles},
    };
    for (const auto& [name, reader] : readers) {
        handle(name, [requests, reader = reader](const QVariantList& arguments, const Reply& reply) {
            reply((requests->*reader)(arguments[0].toString()));
        });
    }
}

void BottlesObject::handleChanging(BottleRequests* requests) {
    handleOneText<BottleRequests>(
        this, requests,
        {{"delete", &BottleRequests::deleteBottle}, {"getRunnerVersion", &BottleRequests::getRunnerVersion}});
    handleTwoTexts<BottleRequests>(this, requests, {{"createBottles", &BottleRequests::createBottles}});
}

void BottlesObject::forwardSignals(BottleRequests* requests) {
    connect(requests, &BottleRequests::bottleDeleted, this,
            [this](const QString& bottle) { emitSignal("bottles_deleted", {bottle}); });
}
