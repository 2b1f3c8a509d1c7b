#include "bottleservice/wire/BottlesObject.h"

#include "bottleservice/BottleEngine.h"

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
    using OneText = void (BottleEngine::*)(const QString&, const Reply&);
    const std::pair<const char*, OneText> ofBottle[] = {
        {"delete", &BottleEngine::deleteBottle},
        {"getRunnerVersion", &BottleEngine::getRunnerVersion},
    };
    for (const auto& [name, function] : ofBottle) {
        handle(name, [engine, function = function](const QVariantList& arguments, const Reply& reply) {
            (engine->*function)(arguments[0].toString(), reply);
        });
    }
    handle("createBottles", [engine](const QVariantList& arguments, const Reply& reply) {
        engine->createBottles(arguments[0].toString(), arguments[1].toString(), reply);
    });
}

void BottlesObject::forwardSignals(BottleEngine* engine) {
    connect(engine, &BottleEngine::bottleDeleted, this,
            [this](const QString& bottle) { emitSignal("bottles_deleted", {bottle}); });
}
