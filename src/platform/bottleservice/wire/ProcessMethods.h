#pragma once

class BusObject;
class ProcessRequests;

/// Adds the methods about processes of bottles, and program_exited, to the object.
void addProcessMethods(BusObject* object, ProcessRequests* requests);
