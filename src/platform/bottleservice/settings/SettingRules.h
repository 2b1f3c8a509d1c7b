#pragma once

#include <QString>

/// The values that settings of a bottle may have.
namespace SettingRules {

constexpr int MinimumDpi = 96;
constexpr int MaximumDpi = 480;

/// "gl", "vulkan" or "gdi".
bool isRenderer(const QString& renderer);

/// The code under which Wine knows a Windows version: "winxp" is "winxp64" in a 64-bit bottle. Empty for an
/// unknown version.
QString windowsVersion(const QString& code, bool is64Bit);

/// Whether the text may be the name of a font family: not empty, no control characters, at most 255
/// characters.
bool isFontName(const QString& name);

}  // namespace SettingRules
