#pragma once

#define VK_NO_PROTOTYPES
#include <vulkan/vulkan_core.h>

#include <QSet>
#include <QString>
#include <QVector>
#include <memory>
#include <vector>

struct VulkanCalls;

/// An instance of the Vulkan loader and its devices. `getProc` is the loader's vkGetInstanceProcAddr, null
/// without a loader. Errors of the loader are logged and read as no devices or no extensions.
class DxCheckerImpl {
public:
    explicit DxCheckerImpl(PFN_vkGetInstanceProcAddr getProc);
    ~DxCheckerImpl();
    DxCheckerImpl(const DxCheckerImpl&) = delete;
    DxCheckerImpl& operator=(const DxCheckerImpl&) = delete;

    /// With the loader of the system, which stays loaded until the process ends. It is not linked, but looked
    /// for when it is asked: the application also runs on a machine without one.
    static std::shared_ptr<const DxCheckerImpl> ofSystem();

    /// Of each device, packed as Vulkan packs versions.
    QVector<quint32> apiVersions() const;
    /// Of each device.
    QVector<QSet<QString>> extensions() const;

    VkInstance instance = nullptr;
    std::vector<VkPhysicalDevice> physicalDevices;
    bool available = false;  ///< there is at least one device

private:
    std::vector<const char*> wantedLayers() const;
    void createInstance();
    void listDevices();

    std::unique_ptr<VulkanCalls> m_calls;
};
