// Stands in for DxChecker.cpp and DxCheckerImpl.cpp where the Vulkan headers were missing at build time.
#include "probes/DxChecker.h"

class DxCheckerImpl {};

DxChecker::DxChecker() {
    qWarning("Failed to create vulkan instance");
    qInfo("this build has no Vulkan support");
}

DxChecker::DxChecker(std::shared_ptr<const DxCheckerImpl> impl) : m_impl(std::move(impl)) {}

bool DxChecker::isAvailable() const {
    return false;
}

DxvkSupportResult DxChecker::dxvkSupport() const {
    return DxvkSupportResult::DontSupport;
}

bool DxChecker::vkd3dSupport() const {
    return false;
}
