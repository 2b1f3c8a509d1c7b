#pragma once

#include "bottleservice/wire/BusObject.h"

class BottleComponentRequests;
class ComponentRequests;
class DependencyRequests;

/// Adds the methods and signals about the components of bottles to the bottles' object.
void addComponentMethods(BusObject* object, BottleComponentRequests* requests);
void addDependencyMethods(BusObject* object, DependencyRequests* requests);

/// com.lumora.Manager.Components at /com/lumora/Manager/Components: the components of the machine.
class ComponentsObject : public BusObject {
    Q_OBJECT

public:
    explicit ComponentsObject(ComponentRequests* requests, QObject* parent = nullptr);
};
