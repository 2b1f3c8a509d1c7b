#pragma once

#include "bottleservice/wire/BusObject.h"

class ProcessRequests;

/// com.lumora.Manager.Programs at /com/lumora/Manager/Programs.
class ProgramsObject : public BusObject {
    Q_OBJECT

public:
    explicit ProgramsObject(ProcessRequests* requests, QObject* parent = nullptr);
};
