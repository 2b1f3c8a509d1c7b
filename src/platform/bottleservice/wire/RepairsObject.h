#pragma once

#include "bottleservice/wire/BusObject.h"

class RepairRequests;

/// com.lumora.Manager.Repairs at /com/lumora/Manager/Repairs.
class RepairsObject : public BusObject {
    Q_OBJECT

public:
    explicit RepairsObject(RepairRequests* requests, QObject* parent = nullptr);
};
