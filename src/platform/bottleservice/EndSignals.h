#pragma once

#include <csignal>
#include <initializer_list>

/// The Unix signals on which the service, and the commands of its executable, end in an orderly way.
inline constexpr std::initializer_list<int> EndSignals = {SIGTERM, SIGINT, SIGHUP};
