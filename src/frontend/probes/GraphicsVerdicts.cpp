#include "probes/GraphicsVerdicts.h"

#include <QJsonObject>
#include <QRegularExpression>
#include <algorithm>

namespace {

constexpr quint32 Vulkan1_0 = 0x400000;
constexpr quint32 Vulkan1_3 = 0x403000;

const QSet<QString>& vkd3dExtensions() {
    static const QSet<QString> names = {
        "VK_EXT_descriptor_indexing", "VK_KHR_timeline_semaphore",
        "VK_KHR_create_renderpass2",  "VK_KHR_sampler_mirror_clamp_to_edge",
        "VK_EXT_robustness2",         "VK_KHR_separate_depth_stencil_layouts"};
    return names;
}

}  // namespace

QDebug operator<<(QDebug stream, DxvkSupportResult result) {
    const QDebugStateSaver saver(stream);
    const char* name = result == DxvkSupportResult::Supportv2   ? "Supportv2"
                       : result == DxvkSupportResult::Supportv1 ? "Supportv1"
                                                                : "DontSupport";
    stream.nospace() << "DxvkSupportResult::" << name;
    return stream;
}

namespace GraphicsVerdicts {

DxvkSupportResult dxvkSupport(const QVector<quint32>& apiVersions) {
    const auto newest = std::max_element(apiVersions.begin(), apiVersions.end());
    if (newest == apiVersions.end() || *newest < Vulkan1_0)
        return DxvkSupportResult::DontSupport;
    return *newest < Vulkan1_3 ? DxvkSupportResult::Supportv1 : DxvkSupportResult::Supportv2;
}

bool vkd3dSupport(const QVector<QSet<QString>>& extensions) {
    return std::any_of(extensions.begin(), extensions.end(),
                       [](const QSet<QString>& offered) { return offered.contains(vkd3dExtensions()); });
}

QStringList usableDxvkVersions(DxvkSupportResult support, const QStringList& versions) {
    static const QRegularExpression letters("[a-z\\-]");
    if (support == DxvkSupportResult::DontSupport)
        return {};
    QStringList usable;
    for (const QString& version : versions) {
        if (support == DxvkSupportResult::Supportv2 || !QString(version).remove(letters).startsWith('2'))
            usable.append(version);
    }
    return usable;
}

std::optional<QStringList> driverPackages(const QJsonArray& gpus) {
    static const QStringList nvidia = {"nvidia-vulkan-common:amd64", "nvidia-vulkan-icd:amd64",
                                       "nvidia-vulkan-icd:i386", "nvidia-driver-full"};
    static const QStringList mesa = {
        "mesa-vulkan-drivers:amd64", "libvulkan1:amd64", "libglx-mesa0:amd64", "libgl1-mesa-dri:amd64",
        "mesa-vulkan-drivers:i386",  "libvulkan1:i386",  "libglx-mesa0:i386",  "libgl1-mesa-dri:i386"};
    if (gpus.isEmpty()) {
        qWarning("No GPU info found");
        return {};
    }
    bool known = false, usesNvidia = false;
    for (const QJsonValue& gpu : gpus) {
        if (!gpu.isObject()) {
            qWarning().nospace() << gpu << ": not a object?";
            continue;
        }
        known = true;
        const QString name = gpu["gpu"].toString().toLower();
        const QString module = gpu["module"].toString();
        qInfo().noquote().nospace() << "GPU " << name << " -> " << module;
        if (name.contains("nvidia")) {
            if (module.contains("nvidia"))
                usesNvidia = true;
            else
                qInfo().noquote() << "No nvidia module found, using module:" << module;
        } else if (module == "radeon") {
            qWarning("Don't support because using radeon module for AMD GPU");
            return {};
        }
    }
    if (!known) {
        qWarning("No GPU info found?");
        return {};
    }
    return usesNvidia ? nvidia : mesa;
}

bool driversComplete(const DriverQueries& queries) {
    if (queries.loaderPolicy().isEmpty()) {
        qWarning("No i386 version of vulkan driver in the repository");
        return false;
    }
    const std::optional<QStringList> packages = driverPackages(queries.gpus());
    if (!packages)
        return false;
    QByteArray error;
    if (queries.installed(*packages, &error))
        return true;
    qWarning().noquote() << "dpkg -s failed" << QString::fromLocal8Bit(error);
    return false;
}

}  // namespace GraphicsVerdicts
