#pragma once

class BusObject;
class ProcessRequests;

/// Puts the methods about what runs in bottles on the object.
void addProcessMethods(BusObject* object, ProcessRequests* requests);
