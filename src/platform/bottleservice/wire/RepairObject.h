#pragma once

#include "bottleservice/wire/BusObject.h"

class RenewalRequests;

/// com.lumora.Manager.Repair at /com/lumora/Manager/Repair.
class RepairObject : public BusObject {
    Q_OBJECT

public:
    explicit RepairObject(RenewalRequests* requests, QObject* parent = nullptr);
};
