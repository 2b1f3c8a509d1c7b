#pragma once

#include <QDebug>
#include <QJsonArray>
#include <QSet>
#include <QStringList>
#include <QVector>
#include <functional>
#include <optional>

/// Which generations of DXVK the machine's Vulkan devices can run.
enum class DxvkSupportResult {
    DontSupport,  ///< no Vulkan device, or too old
    Supportv1,    ///< Vulkan 1.0 or newer, below 1.3
    Supportv2     ///< Vulkan 1.3 or newer
};

QDebug operator<<(QDebug stream, DxvkSupportResult result);

/// What facts about the graphics stack mean. Functions of plain values for any thread; DxChecker collects the
/// facts.
namespace GraphicsVerdicts {

/// From the API version of each device, packed as Vulkan packs it (1.3.0 is 0x403000). The newest decides.
DxvkSupportResult dxvkSupport(const QVector<quint32>& apiVersions);

/// From the extensions of each device. One device must have all that VKD3D needs.
bool vkd3dSupport(const QVector<QSet<QString>>& extensions);

/// Those of the DXVK versions, such as "dxvk-2.3", that such devices run, in their order.
QStringList usableDxvkVersions(DxvkSupportResult support, const QStringList& versions);

/// The packages with the Vulkan drivers of these cards ({"gpu", "module"} each, as in hardwareInfo()), 32-bit
/// ones included. Nothing, with a warning, for cards that are unknown or whose kernel module has no Vulkan.
std::optional<QStringList> driverPackages(const QJsonArray& gpus);

/// How driversComplete() learns about the machine, in the order of the questions.
struct DriverQueries {
    std::function<QByteArray()> loaderPolicy;  ///< what apt prints about the 32-bit loader
    std::function<QJsonArray()> gpus;
    /// Whether all the packages are installed; else `error` is what dpkg printed.
    std::function<bool(const QStringList& packages, QByteArray* error)> installed;
};

/// Whether the Vulkan drivers of all cards are installed, for 32-bit programs too. Each no leaves a warning.
bool driversComplete(const DriverQueries& queries);

}  // namespace GraphicsVerdicts
