#pragma once

#include <QString>

/// What the settings of a bottle may be.
namespace SettingRules {

constexpr int MinimumDpi = 96;
constexpr int MaximumDpi = 480;

/// "gl", "vulkan" or "gdi".
bool isRenderer(const QString& renderer);

/// The code under which Wine knows a Windows version: "winxp" of a 64-bit bottle is "winxp64". Empty for what
/// is no version.
QString windowsVersion(const QString& code, bool is64Bit);

/// The name of a font family: no control characters, not empty, at most 255 characters.
bool isFontName(const QString& name);

}  // namespace SettingRules
