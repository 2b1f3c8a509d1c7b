#pragma once

#include "bottleservice/wire/BusObject.h"

/// com.lumora.Manager at /com/lumora/Manager: the service's version, and its end.
class ManagerObject : public BusObject {
    Q_OBJECT

public:
    explicit ManagerObject(const QString& version, QObject* parent = nullptr);

Q_SIGNALS:
    void quitRequested();
};
