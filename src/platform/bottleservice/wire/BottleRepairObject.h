#pragma once

#include "bottleservice/wire/BusObject.h"

class BottleRepairRequests;

/// com.lumora.Manager.BottleRepair at /com/lumora/Manager/BottleRepair.
class BottleRepairObject : public BusObject {
    Q_OBJECT

public:
    explicit BottleRepairObject(BottleRepairRequests* requests, QObject* parent = nullptr);
};
