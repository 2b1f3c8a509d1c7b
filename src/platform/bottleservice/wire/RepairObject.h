#pragma once

#include "bottleservice/wire/BusObject.h"

class BottleRepairRequests;
class DependencyRequests;
class RepairOfferRequests;

/// com.lumora.Manager.Repair at /com/lumora/Manager/Repair.
class RepairObject : public BusObject {
    Q_OBJECT

public:
    RepairObject(RepairOfferRequests* offers, BottleRepairRequests* repairs, DependencyRequests* dependencies,
                 QObject* parent = nullptr);
};
