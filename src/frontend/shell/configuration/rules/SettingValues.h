#pragma once

#include <QJsonObject>
#include <QVariant>
#include <array>

/// The settings of a bottle that the basic page shows, in the order of the page.
enum class Setting {
    Renderer,
    DiscreteGpu,
    CpuRendering,
    Dpi,
    Dxvk,
    Vkd3d,
    WindowsVersion,
    Runner,
    MemOptimized,
    NtSync
};
constexpr int SettingCount = int(Setting::NtSync) + 1;

/// The value of each setting, in the form of the wire: texts for choices and components (an empty one is a
/// component that is off), bool for switches, int for the DPI.
class SettingValues {
public:
    /// Those of a new bottle.
    SettingValues();

    QVariant value(Setting setting) const { return m_values[size_t(setting)]; }
    QString text(Setting setting) const { return value(setting).toString(); }
    bool isOn(Setting setting) const { return value(setting).toBool(); }
    void set(Setting setting, const QVariant& value) { m_values[size_t(setting)] = value; }
    bool isStandard(Setting setting) const { return value(setting) == standard(setting); }

    /// The value in a new bottle.
    static QVariant standard(Setting setting);

    /// Takes the values of a bottle's record. A renderer or Windows version that is not known is logged, and
    /// leaves the value as it is.
    void read(const QJsonObject& record);

    bool operator==(const SettingValues& other) const { return m_values == other.m_values; }

private:
    std::array<QVariant, size_t(SettingCount)> m_values;
};

/// One choice of a setting: its value on the wire, and the text that the user sees.
struct SettingChoice {
    QString value;
    QString text;
};

namespace SettingChoices {

constexpr int MinimumDpi = 96;
constexpr int MaximumDpi = 480;
constexpr int DpiStep = 30;

/// In the order of display; empty for a setting that is no choice.
QVector<SettingChoice> of(Setting setting);
/// Empty for an unknown value.
QString textOf(Setting setting, const QString& value);

}  // namespace SettingChoices
