#pragma once

class BusObject;
class DesktopRequests;

/// Adds the methods about the desktop to the object.
void addDesktopMethods(BusObject* object, DesktopRequests* requests);
