#pragma once

class QString;

/// The windows that this version has for the rooms below.
namespace ApplicationWindows {

/// Tells the user that there is no configuration window for the bottle, in a window that is not modal.
void tellNoConfiguration(const QString& bottle);

}  // namespace ApplicationWindows
