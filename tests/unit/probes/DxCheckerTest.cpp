#include <cstring>

#include "probes/DxChecker.h"
#include "probes/DxCheckerImpl.h"
#include "support/LogCapture.h"
#include "support/Table.h"

using TestSupport::LogCapture;
using TestSupport::Table;

namespace {

/// A loader with devices of these versions, which fails at one call.
struct FakeLoader {
    QVector<quint32> devices;
    QByteArray failing;
    int incomplete = 2;  ///< lists that come too short
    int instances = 0;
    quint32 wantedVersion = 0;

    VkResult result(const char* call) const { return failing == call ? VK_ERROR_DEVICE_LOST : VK_SUCCESS; }
} loader;

VkResult createInstance(const VkInstanceCreateInfo* info, const VkAllocationCallbacks*,
                        VkInstance* instance) {
    loader.wantedVersion = info->pApplicationInfo->apiVersion;
    *instance = reinterpret_cast<VkInstance>(&loader);
    loader.instances += loader.result("create") == VK_SUCCESS;
    return loader.result("create");
}
void destroyInstance(VkInstance, const VkAllocationCallbacks*) {
    --loader.instances;
}
VkResult enumerateDevices(VkInstance, uint32_t* count, VkPhysicalDevice* devices) {
    *count = uint32_t(loader.devices.size());
    for (int i = 0; devices && i < loader.devices.size(); ++i)
        devices[i] = reinterpret_cast<VkPhysicalDevice>(&loader.devices[i]);
    return devices && loader.incomplete-- > 0 ? VK_INCOMPLETE : loader.result("list");
}
void properties(VkPhysicalDevice device, VkPhysicalDeviceProperties* result) {
    *result = {};
    result->apiVersion = *reinterpret_cast<quint32*>(device);
    result->driverVersion = VK_MAKE_API_VERSION(0, 22, 3, 6);
    std::memset(result->deviceName, 'x', sizeof result->deviceName);  // without an end
}
VkResult extensions(VkPhysicalDevice, const char*, uint32_t* count, VkExtensionProperties* result) {
    static const char* const names[] = {
        "VK_EXT_descriptor_indexing", "VK_KHR_timeline_semaphore",
        "VK_KHR_create_renderpass2",  "VK_KHR_sampler_mirror_clamp_to_edge",
        "VK_EXT_robustness2",         "VK_KHR_separate_depth_stencil_layouts"};
    *count = 6;
    for (int i = 0; result && i < 6; ++i)
        std::strcpy(result[i].extensionName, names[i]);
    return loader.result("extensions");
}

PFN_vkVoidFunction getProc(VkInstance, const char* name) {
    static const QHash<QByteArray, PFN_vkVoidFunction> functions = {
        {"vkCreateInstance", reinterpret_cast<PFN_vkVoidFunction>(createInstance)},
        {"vkDestroyInstance", reinterpret_cast<PFN_vkVoidFunction>(destroyInstance)},
        {"vkEnumeratePhysicalDevices", reinterpret_cast<PFN_vkVoidFunction>(enumerateDevices)},
        {"vkGetPhysicalDeviceProperties", reinterpret_cast<PFN_vkVoidFunction>(properties)},
        {"vkEnumerateDeviceExtensionProperties", reinterpret_cast<PFN_vkVoidFunction>(extensions)}};
    return loader.failing == name ? nullptr : functions.value(name);
}

}  // namespace

class DxCheckerTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void answers_data() {
        const Table<QVector<quint32>, QString, QString> row("devices", "failing", "logged");
        row("-00 no device", {}, "", "physical vulkan device supported: 0");
        row("+1v 1.2", {0x4020e7}, "", "  - 0: xxxxx");
        row("+2v 1.1 and 1.3", {0x401000, 0x403000}, "", "x (apiVersion: 1.3.0, driverVersion: 22.3.6)");
        row("+2- no extensions", {0x403000}, "extensions", "failed with vk::PhysicalDevice::enumerate");
        row("-0- no list", {0x403000}, "list",
            "failed with vk::Instance::enumeratePhysicalDevices: ErrorDev");
        row("-0- no instance", {0x403000}, "create", "Failed to create vulkan instance");
        row("-0- no loader", {0x403000}, "loader", "Failed to create vulkan instance");
        row("-0- no function", {0x403000}, "vkGetPhysicalDeviceProperties", "has no vkGetPhysicalDeviceProp");
    }
    /// The name of a row begins with the answers: available, level of DXVK, VKD3D.
    void answers() {
        QFETCH(QVector<quint32>, devices);
        QFETCH(QString, failing);
        QFETCH(QString, logged);
        loader = {devices, failing.toUtf8()};
        const LogCapture log;
        {
            const QByteArray expected = QTest::currentDataTag();
            auto first = std::make_unique<DxChecker>(
                std::make_shared<const DxCheckerImpl>(failing == "loader" ? nullptr : getProc));
            const DxChecker checker(*first);
            first.reset();  // the instance goes with the last copy
            QCOMPARE(checker.isAvailable(), expected[0] == '+');
            QCOMPARE(int(checker.dxvkSupport()), expected[1] - '0');
            QCOMPARE(checker.vkd3dSupport(), expected[2] == 'v');
            if (checker.isAvailable())
                QCOMPARE(loader.instances, 1);
        }
        QCOMPARE(loader.instances, 0);
        QCOMPARE(loader.wantedVersion, failing == "loader" ? 0U : 0x400000U);
        QVERIFY2(log.contains(logged), qPrintable(log.text()));
    }
};

QTEST_GUILESS_MAIN(DxCheckerTest)
#include "DxCheckerTest.moc"
