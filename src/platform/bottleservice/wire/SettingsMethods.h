#pragma once

class BusObject;
class SettingsRequests;

/// Adds the methods about settings to the object.
void addSettingsMethods(BusObject* object, SettingsRequests* requests);
