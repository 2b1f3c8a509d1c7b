#pragma once

#include "bottleservice/wire/BusObject.h"

class CleanUpRequests;

/// com.lumora.Manager.CleanUp at /com/lumora/Manager/CleanUp.
class CleanUpObject : public BusObject {
    Q_OBJECT

public:
    explicit CleanUpObject(CleanUpRequests* requests, QObject* parent = nullptr);
};
