#pragma once

/// The names of the background service on the session bus. Its objects lie below Path, and their interfaces
/// below Interface, each under the same last part, such as "Bottles".
namespace ServiceNames {

inline constexpr char Service[] = "com.lumora.LumoraWineLauncher";
inline constexpr char Path[] = "/com/lumora/Manager";
inline constexpr char Interface[] = "com.lumora.Manager";

}  // namespace ServiceNames
