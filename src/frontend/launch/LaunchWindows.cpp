#include "launch/LaunchWindows.h"

namespace {
LaunchWindows* s_instance = nullptr;
}

LaunchWindows* LaunchWindows::instance() {
    return s_instance;
}

void LaunchWindows::setInstance(LaunchWindows* windows) {
    s_instance = windows;
}
