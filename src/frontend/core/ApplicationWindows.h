#pragma once

/// The windows that this version has for the rooms below.
namespace ApplicationWindows {

/// Sets their openers in LaunchWindows. The application clears them at its end.
void setOpeners();

}  // namespace ApplicationWindows
