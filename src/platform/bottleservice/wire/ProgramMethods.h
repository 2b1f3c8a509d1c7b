#pragma once

class BusObject;
class ProgramRequests;

/// Adds the methods and signals about programs to the object.
void addProgramMethods(BusObject* object, ProgramRequests* requests);
