#pragma once

#include "bottleservice/wire/BusObject.h"

class LifeRequests;

/// com.lumora.Manager.Programs at /com/lumora/Manager/Programs.
class ProgramsObject : public BusObject {
    Q_OBJECT

public:
    explicit ProgramsObject(LifeRequests* requests, QObject* parent = nullptr);
};
