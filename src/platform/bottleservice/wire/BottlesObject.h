#pragma once

#include "bottleservice/wire/BusObject.h"

class BottleEngine;

/// com.lumora.Manager.Bottles at /com/lumora/Manager/Bottles: the engine on the bus.
class BottlesObject : public BusObject {
    Q_OBJECT

public:
    explicit BottlesObject(BottleEngine* engine, QObject* parent = nullptr);

private:
    void handleReading(BottleEngine* engine);
    void handleChanging(BottleEngine* engine);
    void forwardSignals(BottleEngine* engine);
};
