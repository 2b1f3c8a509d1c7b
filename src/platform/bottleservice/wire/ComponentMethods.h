#pragma once

#include "bottleservice/wire/BusObject.h"

class ComponentRequests;
class DependencyRequests;

/// The components of bottles on the bottles' object.
void addComponentMethods(BusObject* object, ComponentRequests* requests);
void addDependencyMethods(BusObject* object, DependencyRequests* requests);

/// com.lumora.Manager.Components at /com/lumora/Manager/Components: the components of the machine.
class ComponentsObject : public BusObject {
    Q_OBJECT

public:
    explicit ComponentsObject(ComponentRequests* requests, QObject* parent = nullptr);
};
