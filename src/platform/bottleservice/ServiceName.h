#pragma once

/// The service's name on the session bus.
inline constexpr char ServiceName[] = "com.lumora.LumoraWineLauncher";
