#pragma once

#include "bottleservice/wire/BusObject.h"

class OfflineRequests;

/// com.lumora.Manager.OfflineDependency at /com/lumora/Manager/OfflineDependency.
class OfflineObject : public BusObject {
    Q_OBJECT

public:
    explicit OfflineObject(OfflineRequests* requests, QObject* parent = nullptr);
};
