#include "probes/DxCheckerImpl.h"

#include <QDebug>
#include <QLibrary>
#include <vulkan/vulkan.hpp>

#include "core/base/BuildInfo.h"

/// The loader's functions that are called here, in the form that the C++ bindings take.
struct VulkanCalls : vk::DispatchLoaderBase {
    PFN_vkGetInstanceProcAddr vkGetInstanceProcAddr = nullptr;
    PFN_vkCreateInstance vkCreateInstance = nullptr;
    PFN_vkDestroyInstance vkDestroyInstance = nullptr;
    PFN_vkEnumerateInstanceLayerProperties vkEnumerateInstanceLayerProperties = nullptr;
    PFN_vkEnumeratePhysicalDevices vkEnumeratePhysicalDevices = nullptr;
    PFN_vkGetPhysicalDeviceProperties vkGetPhysicalDeviceProperties = nullptr;
    PFN_vkEnumerateDeviceExtensionProperties vkEnumerateDeviceExtensionProperties = nullptr;

    template <class Function>
    bool load(VkInstance instance, const char* name, Function& function) {
        function = reinterpret_cast<Function>(vkGetInstanceProcAddr(instance, name));
        if (!function)
            qWarning("the Vulkan loader has no %s", name);
        return function;
    }
};

namespace {

/// Names come from drivers: they may lack their end.
template <std::size_t Size>
QString textOf(const vk::ArrayWrapper1D<char, Size>& name) {
    return QString::fromUtf8(name.data(), int(qstrnlen(name.data(), Size)));
}

QString versionText(quint32 version) {
    return QString("%1.%2.%3")
        .arg(VK_API_VERSION_MAJOR(version))
        .arg(VK_API_VERSION_MINOR(version))
        .arg(VK_API_VERSION_PATCH(version));
}

}  // namespace

std::shared_ptr<const DxCheckerImpl> DxCheckerImpl::ofSystem() {
    QLibrary loader("vulkan", 1);
    const auto getProc = reinterpret_cast<PFN_vkGetInstanceProcAddr>(loader.resolve("vkGetInstanceProcAddr"));
    if (!getProc)
        qInfo().noquote() << "no Vulkan loader:" << loader.errorString();
    return std::make_shared<const DxCheckerImpl>(getProc);
}

DxCheckerImpl::DxCheckerImpl(PFN_vkGetInstanceProcAddr getProc) : m_calls(std::make_unique<VulkanCalls>()) {
    m_calls->vkGetInstanceProcAddr = getProc;
    try {
        createInstance();
    } catch (const std::exception& error) {
        qInfo() << "vkCreateInstance:" << error.what();
    }
    if (!instance) {
        qWarning("Failed to create vulkan instance");
        return;
    }
    try {
        listDevices();
    } catch (const std::exception& error) {
        physicalDevices.clear();
        qWarning().nospace() << "failed with " << error.what();
    }
    available = !physicalDevices.empty();
}

DxCheckerImpl::~DxCheckerImpl() {
    if (instance && m_calls->vkDestroyInstance)
        vk::Instance(instance).destroy(nullptr, *m_calls);
}

/// The validation layers, in builds for development.
std::vector<const char*> DxCheckerImpl::wantedLayers() const {
    std::vector<const char*> wanted;
    if (BuildInfo::isRelease() || !m_calls->load(nullptr, "vkEnumerateInstanceLayerProperties",
                                                 m_calls->vkEnumerateInstanceLayerProperties))
        return wanted;
    QSet<QString> present;
    for (const vk::LayerProperties& layer : vk::enumerateInstanceLayerProperties(*m_calls)) {
        present.insert(textOf(layer.layerName));
        qInfo().noquote().nospace() << "Available Instance layer: " << textOf(layer.layerName);
    }
    for (const char* name : {"VK_LAYER_KHRONOS_validation", "VK_LAYER_LUNARG_standard_validation"}) {
        if (present.contains(name))
            wanted.push_back(name);
    }
    return wanted;
}

void DxCheckerImpl::createInstance() {
    if (!m_calls->vkGetInstanceProcAddr ||
        !m_calls->load(nullptr, "vkCreateInstance", m_calls->vkCreateInstance))
        return;
    const std::vector<const char*> layers = wantedLayers();
    qDebug().nospace() << "Enabled layer count: " << layers.size();
    for (const char* layer : layers)
        qDebug().nospace() << "- " << layer;
    const vk::ApplicationInfo application("DxChecker", 0, nullptr, 0, VK_API_VERSION_1_0);
    const vk::InstanceCreateInfo info({}, &application, layers);
    instance = vk::createInstance(info, nullptr, *m_calls);
}

void DxCheckerImpl::listDevices() {
    VulkanCalls& calls = *m_calls;
    if (!calls.load(instance, "vkDestroyInstance", calls.vkDestroyInstance) ||
        !calls.load(instance, "vkEnumeratePhysicalDevices", calls.vkEnumeratePhysicalDevices) ||
        !calls.load(instance, "vkGetPhysicalDeviceProperties", calls.vkGetPhysicalDeviceProperties) ||
        !calls.load(instance, "vkEnumerateDeviceExtensionProperties",
                    calls.vkEnumerateDeviceExtensionProperties))
        return;
    for (const vk::PhysicalDevice& device : vk::Instance(instance).enumeratePhysicalDevices(calls))
        physicalDevices.push_back(device);
    qInfo().nospace() << "physical vulkan device supported: " << physicalDevices.size();
    for (std::size_t i = 0; i < physicalDevices.size(); ++i) {
        const auto properties = vk::PhysicalDevice(physicalDevices[i]).getProperties(calls);
        qInfo().noquote().nospace() << "  - " << i << ": " << textOf(properties.deviceName)
                                    << " (apiVersion: " << versionText(properties.apiVersion)
                                    << ", driverVersion: " << versionText(properties.driverVersion) << ")";
    }
}

QVector<quint32> DxCheckerImpl::apiVersions() const {
    QVector<quint32> versions;
    for (const VkPhysicalDevice device : physicalDevices)
        versions.append(vk::PhysicalDevice(device).getProperties(*m_calls).apiVersion);
    return versions;
}

QVector<QSet<QString>> DxCheckerImpl::extensions() const {
    QVector<QSet<QString>> all;
    for (const VkPhysicalDevice device : physicalDevices) {
        QSet<QString> names;
        try {
            const auto offered =
                vk::PhysicalDevice(device).enumerateDeviceExtensionProperties(nullptr, *m_calls);
            for (const vk::ExtensionProperties& extension : offered)
                names.insert(textOf(extension.extensionName));
        } catch (const std::exception& error) {
            qWarning().nospace() << "failed with " << error.what();
        }
        all.append(names);
    }
    return all;
}
