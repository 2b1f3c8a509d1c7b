#include "bottleservice/wire/BottlesObject.h"

#include "bottleservice/requests/BottleEngine.h"
#include "bottleservice/wire/TextMethods.h"

BottlesObject::BottlesObject(BottleEngine* engine, QObject* parent)
    : BusObject("/com/lumora/Manager/Bottles", ":/wire/com.lumora.Manager.Bottles.xml", parent) {
    handleReading(engine);
    handleChanging(engine);
    forwardSignals(engine);
}

void BottlesObject::handleReading(BottleEngine* engine) {
    handle("list", [engine](const QVariantList&, const Reply& reply) { reply(engine->list()); });
    using Reader = Answer (BottleEngine::*)(const QString&) const;
    const std::pair<const char*, Reader> readers[] = {
        {"get", &BottleEngine::get},
        {"getEmulators", &BottleEngine::getEmulators},
        {"checkPublicBottles", &BottleEngine::checkPublicBottles},
    };
    for (const auto& [name, reader] : readers) {
        handle(name, [engine, reader = reader](const QVariantList& arguments, const Reply& reply) {
            reply((engine->*reader)(arguments[0].toString()));
        });
    }
}

void BottlesObject::handleChanging(BottleEngine* engine) {
    handleOneText<BottleEngine>(
        this, engine,
        {{"delete", &BottleEngine::deleteBottle}, {"getRunnerVersion", &BottleEngine::getRunnerVersion}});
    handleTwoTexts<BottleEngine>(this, engine, {{"createBottles", &BottleEngine::createBottles}});
}

void BottlesObject::forwardSignals(BottleEngine* engine) {
    connect(engine, &BottleEngine::bottleDeleted, this,
            [this](const QString& bottle) { emitSignal("bottles_deleted", {bottle}); });
}
