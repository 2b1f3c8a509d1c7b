#pragma once

#include <memory>

#include "probes/GraphicsVerdicts.h"

class DxCheckerImpl;

/// What the machine's Vulkan loader and devices can do, asked once at construction. Copies share the loader's
/// instance, which goes with the last one. Construction and the two questions call into the graphics drivers,
/// which may take long: windows ask GraphicsSupport instead. One thread at a time. Without a loader, a
/// device, or the Vulkan headers at build time nothing is supported; the reason is logged.
class DxChecker {
public:
    DxChecker();
    explicit DxChecker(std::shared_ptr<const DxCheckerImpl> impl);

    bool isAvailable() const;
    DxvkSupportResult dxvkSupport() const;
    bool vkd3dSupport() const;

private:
    std::shared_ptr<const DxCheckerImpl> m_impl;
};

/// Whether the packages with the Vulkan drivers are installed, for 32-bit programs too. Runs apt, dpkg and
/// the tools of hardwareInfo(), and waits for each at most 30 s. May be called from any thread.
bool vulkanDriverComplete();
