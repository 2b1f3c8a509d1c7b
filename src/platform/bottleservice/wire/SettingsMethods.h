#pragma once

class BusObject;
class SettingsRequests;

/// Puts the methods about settings on the object.
void addSettingsMethods(BusObject* object, SettingsRequests* requests);
