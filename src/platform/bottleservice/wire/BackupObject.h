#pragma once

#include "bottleservice/wire/BusObject.h"

class BackupRequests;

/// com.lumora.Manager.Backup at /com/lumora/Manager/Backup.
class BackupObject : public BusObject {
    Q_OBJECT

public:
    explicit BackupObject(BackupRequests* requests, QObject* parent = nullptr);
};
