#pragma once

#include "bottleservice/wire/BusObject.h"

class BottleRequests;

/// com.lumora.Manager.Bottles at /com/lumora/Manager/Bottles: the bottles as a whole. The other families of
/// requests about bottles add their methods (...Methods in this folder).
class BottlesObject : public BusObject {
    Q_OBJECT

public:
    explicit BottlesObject(BottleRequests* requests, QObject* parent = nullptr);

private:
    void handleReading(BottleRequests* requests);
    void handleChanging(BottleRequests* requests);
    void forwardSignals(BottleRequests* requests);
};
