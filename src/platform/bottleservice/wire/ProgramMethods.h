#pragma once

class BusObject;
class ProgramRequests;

/// Puts the methods and signals about programs on the object.
void addProgramMethods(BusObject* object, ProgramRequests* requests);
