#pragma once

#include <QString>

/// The values that settings of a bottle may have, whoever gives them: a caller, a manifest or a recipe.
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

/// Whether the text may name a DLL or program in an override: a file name without directory, with a leading
/// "*" for "in any directory".
bool isDllName(const QString& name);
/// How a DLL is loaded: "n" (native), "b" (Wine's own), "n,b", "b,n" or empty (not at all).
bool isLoadMethod(const QString& method);
/// The method that Wine takes from a text such as "native, builtin"; other texts as they are.
QString loadMethod(const QString& text);
/// The module that an override is about: Wine looks for "d3d9" when it loads d3d9.dll. Case does not matter.
QString moduleName(const QString& dll);

/// Whether an environment variable can have this name.
bool isVariableName(const QString& name);
/// Whether a variable may come from another user: not one that loads code into native programs, leads them
/// elsewhere, or belongs to the launch itself.
bool isSharedVariable(const QString& name);

/// Whether the text may name a component, and be the name of a file or directory of the service's data.
bool isPlainName(const QString& name);

}  // namespace SettingRules
