#include "launch/LaunchWindows.h"

LaunchWindows& LaunchWindows::instance() {
    static LaunchWindows windows;
    return windows;
}
