#pragma once

#include "bottleservice/wire/BusObject.h"

class RepairRequests;

/// com.lumora.Manager.Repair at /com/lumora/Manager/Repair.
class RepairObject : public BusObject {
    Q_OBJECT

public:
    explicit RepairObject(RepairRequests* requests, QObject* parent = nullptr);
};
