#pragma once

#include <QFuture>

#include "probes/GraphicsVerdicts.h"

/// The graphics checks for windows, which never wait: each check runs on a thread of its own, and its future
/// serves every caller (see backend/WhenDone.h). GUI thread only. The end of the process does
/// not wait for them.
namespace GraphicsSupport {

struct Facts {
    bool available = false;  ///< there is a Vulkan loader with a device
    DxvkSupportResult dxvk = DxvkSupportResult::DontSupport;
    bool vkd3d = false;
};

/// What DxChecker finds; asked once per process.
QFuture<Facts> facts();

/// What vulkanDriverComplete() finds. Callers share a running check and a yes; after a no the next caller has
/// it checked again, since the user may have installed the drivers meanwhile.
QFuture<bool> driverComplete();

/// Whether no check is running. Otherwise leave the process with _exit(): a driver may be at work.
bool isIdle();

}  // namespace GraphicsSupport
