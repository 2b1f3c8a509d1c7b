#include "probes/DxChecker.h"

#include "probes/DxCheckerImpl.h"

DxChecker::DxChecker() : DxChecker(DxCheckerImpl::ofSystem()) {}

DxChecker::DxChecker(std::shared_ptr<const DxCheckerImpl> impl) : m_impl(std::move(impl)) {}

bool DxChecker::isAvailable() const {
    return m_impl->available;
}

DxvkSupportResult DxChecker::dxvkSupport() const {
    return m_impl->available ? GraphicsVerdicts::dxvkSupport(m_impl->apiVersions())
                             : DxvkSupportResult::DontSupport;
}

bool DxChecker::vkd3dSupport() const {
    return GraphicsVerdicts::vkd3dSupport(m_impl->extensions());
}
