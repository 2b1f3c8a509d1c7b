#include <cstring>

#include "probes/DxChecker.h"
#include "probes/DxCheckerImpl.h"
#include "support/LogCapture.h"
#include "support/Table.h"

using TestSupport::LogCapture;
using TestSupport::Table;

namespace {

/// A loader whose answers a test sets.
struct FakeLoader {
    VkResult created = VK_SUCCESS;
    QVector<VkResult> enumerations;  ///< results of the calls that fill the list; then VK_SUCCESS
    QVector<quint32> devices;        ///< API versions
    VkResult extensions = VK_SUCCESS;
    QByteArray missing;  ///< a function that it does not have
    int instances = 0;
    quint32 wantedVersion = 0;
    QString application;
} loader;

VkResult createInstance(const VkInstanceCreateInfo* info, const VkAllocationCallbacks*,
                        VkInstance* instance) {
    loader.wantedVersion = info->pApplicationInfo->apiVersion;
    loader.application = info->pApplicationInfo->pApplicationName;
    if (loader.created == VK_SUCCESS) {
        *instance = reinterpret_cast<VkInstance>(&loader);
        ++loader.instances;
    }
    return loader.created;
}
void destroyInstance(VkInstance, const VkAllocationCallbacks*) {
    --loader.instances;
}
VkResult enumerateDevices(VkInstance, uint32_t* count, VkPhysicalDevice* devices) {
    *count = uint32_t(loader.devices.size());
    if (!devices)
        return VK_SUCCESS;
    for (quint32& version : loader.devices)
        *devices++ = reinterpret_cast<VkPhysicalDevice>(&version);
    return loader.enumerations.isEmpty() ? VK_SUCCESS : loader.enumerations.takeFirst();
}
void properties(VkPhysicalDevice device, VkPhysicalDeviceProperties* result) {
    *result = {};
    result->apiVersion = *reinterpret_cast<quint32*>(device);
    result->driverVersion = VK_MAKE_API_VERSION(0, 22, 3, 6);
    std::memset(result->deviceName, 'x', sizeof result->deviceName);  // without an end
}
VkResult deviceExtensions(VkPhysicalDevice, const char*, uint32_t* count, VkExtensionProperties* result) {
    static const char* const names[] = {
        "VK_EXT_descriptor_indexing", "VK_KHR_timeline_semaphore",
        "VK_KHR_create_renderpass2",  "VK_KHR_sampler_mirror_clamp_to_edge",
        "VK_EXT_robustness2",         "VK_KHR_separate_depth_stencil_layouts"};
    *count = 6;
    for (int i = 0; result && i < 6; ++i) {
        std::memset(&result[i], 0, sizeof *result);
        std::strcpy(result[i].extensionName, names[i]);
    }
    return loader.extensions;
}

template <class Function>
PFN_vkVoidFunction untyped(Function function) {
    return reinterpret_cast<PFN_vkVoidFunction>(function);
}

PFN_vkVoidFunction getProc(VkInstance, const char* name) {
    const QByteArray wanted = name;
    if (wanted == loader.missing)
        return nullptr;
    if (wanted == "vkCreateInstance")
        return untyped(createInstance);
    if (wanted == "vkDestroyInstance")
        return untyped(destroyInstance);
    if (wanted == "vkEnumeratePhysicalDevices")
        return untyped(enumerateDevices);
    if (wanted == "vkGetPhysicalDeviceProperties")
        return untyped(properties);
    return wanted == "vkEnumerateDeviceExtensionProperties" ? untyped(deviceExtensions) : nullptr;
}

}  // namespace

class DxCheckerTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { loader = {}; }

    void devices_data() {
        const Table<QVector<quint32>, bool, int> row("devices", "available", "dxvk");
        row("none", {}, false, 0);
        row("1.2", {0x4020e7}, true, 1);
        row("1.1 and 1.3", {0x401000, 0x403000}, true, 2);
    }
    void devices() {
        QFETCH(QVector<quint32>, devices);
        loader.devices = devices;
        loader.enumerations = {VK_INCOMPLETE, VK_INCOMPLETE};
        const LogCapture log;
        const DxChecker checker(std::make_shared<const DxCheckerImpl>(getProc));
        QTEST(checker.isAvailable(), "available");
        QTEST(int(checker.dxvkSupport()), "dxvk");
        QTEST(checker.vkd3dSupport(), "available");
        QCOMPARE(loader.application, QString("DxChecker"));
        QCOMPARE(loader.wantedVersion, 0x400000U);
        QVERIFY(log.contains(QString("physical vulkan device supported: %1").arg(devices.size())));
        if (devices.size() == 2)
            QVERIFY2(
                log.contains("  - 1: " + QString(256, 'x') + " (apiVersion: 1.3.0, driverVersion: 22.3.6)"),
                qPrintable(log.text()));
    }

    void faults_data() {
        const Table<QString, QString> row("fault", "logged");
        row("no loader", "", "Failed to create vulkan instance");
        row("no instance", "created", "Failed to create vulkan instance");
        row("no list", "list", "failed with vk::Instance::enumeratePhysicalDevices: ErrorOutOfHostMemory");
        row("no create", "vkCreateInstance", "Failed to create vulkan instance");
        row("no function", "vkGetPhysicalDeviceProperties", "has no vkGetPhysicalDeviceProperties");
    }
    void faults() {
        QFETCH(QString, fault);
        loader.devices = {0x403000};
        loader.missing = fault.toUtf8();
        if (fault == "created")
            loader.created = VK_ERROR_INCOMPATIBLE_DRIVER;
        if (fault == "list")
            loader.enumerations = {VK_ERROR_OUT_OF_HOST_MEMORY};
        const LogCapture log;
        {
            const DxChecker checker(
                std::make_shared<const DxCheckerImpl>(fault.isEmpty() ? nullptr : getProc));
            QVERIFY(!checker.isAvailable());
            QCOMPARE(checker.dxvkSupport(), DxvkSupportResult::DontSupport);
            QVERIFY(!checker.vkd3dSupport());
        }
        QFETCH(QString, logged);
        QVERIFY2(log.contains(QtWarningMsg, logged), qPrintable(log.text()));
        QCOMPARE(loader.instances, 0);
    }

    void extensionsUnknown() {
        loader.devices = {0x403000};
        loader.extensions = VK_ERROR_DEVICE_LOST;
        const LogCapture log;
        const DxChecker checker(std::make_shared<const DxCheckerImpl>(getProc));
        QVERIFY(checker.isAvailable() && !checker.vkd3dSupport());
        QVERIFY2(log.contains(QtWarningMsg, "failed with"), qPrintable(log.text()));
    }

    void copiesShareTheInstance() {
        loader.devices = {0x403000};
        auto first = std::make_unique<DxChecker>(std::make_shared<const DxCheckerImpl>(getProc));
        auto second = std::make_unique<DxChecker>(*first);
        first.reset();
        QCOMPARE(loader.instances, 1);
        QVERIFY(second->isAvailable());
        second.reset();
        QCOMPARE(loader.instances, 0);
    }
};

QTEST_GUILESS_MAIN(DxCheckerTest)
#include "DxCheckerTest.moc"
