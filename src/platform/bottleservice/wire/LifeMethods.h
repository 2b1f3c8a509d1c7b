#pragma once

class BusObject;
class LifeRequests;

/// Puts the methods about what runs in bottles on the object.
void addLifeMethods(BusObject* object, LifeRequests* requests);
