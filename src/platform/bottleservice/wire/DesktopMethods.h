#pragma once

class BusObject;
class DesktopRequests;

/// Puts the requests about the desktop on the bus.
void addDesktopMethods(BusObject* object, DesktopRequests* requests);
