#pragma once

#include "bottleservice/wire/BusObject.h"

class SetupRequests;

/// com.lumora.Manager.InstallerManager at /com/lumora/Manager/InstallerManager.
class InstallerObject : public BusObject {
    Q_OBJECT

public:
    explicit InstallerObject(SetupRequests* requests, QObject* parent = nullptr);
};
