#include "shell/configuration/rules/SettingTable.h"

#include <QCoreApplication>

#include "backend/BottlesConfig.h"
#include "backend/ComponentKind.h"
#include "shell/configuration/rules/ComponentSetup.h"

namespace {

using Control = SettingControl;
using Service = BottlesConfig;

template <auto Setter, class Value>
void sendValue(const QString& bottle, const QVariant& value, QObject* context,
               const Service::Handler& handler) {
    (Service::instance()->*Setter)(bottle, value.value<Value>(), context, handler);
}

template <auto Setter>
void sendComponent(const QString& bottle, const QVariant& value, QObject* context,
                   const Service::Handler& handler) {
    (Service::instance()->*Setter)(bottle, ComponentSetup::nameOf(value.toString()), context, handler);
}

constexpr std::array<SettingInfo, size_t(SettingCount)> Table{{
    {Setting::Renderer, "d3drenderer_combobox", Control::Choice,
     QT_TRANSLATE_NOOP("BasicPage", "WineD3D Rendering Method"),
     QT_TRANSLATE_NOOP("BasicPage", "If there is a black screen, you can set wineD3D rendering mode to gdi."),
     QT_TRANSLATE_NOOP("BasicPage",
                       "How Wine draws Direct3D: opengl suits most programs, vulkan is for dxvk and vkd3d, "
                       "gdi draws without the graphics card."),
     &sendValue<&Service::setD3dRenderer, QString>},
    {Setting::DiscreteGpu, "discrete_gpu_switch_btn", Control::Switch,
     QT_TRANSLATE_NOOP("BasicPage", "Use discrete GPU"), "",
     QT_TRANSLATE_NOOP("BasicPage",
                       "On a computer with two graphics cards, programs run on the faster one, which takes "
                       "more power."),
     &sendValue<&Service::setDiscreteGpu, bool>},
    {Setting::CpuRendering, "software_render_switch_btn", Control::Switch,
     QT_TRANSLATE_NOOP("BasicPage", "CPU rendering"), "",
     QT_TRANSLATE_NOOP(
         "BasicPage",
         "Draws without the graphics card, which is slow, but right where a driver draws wrongly."),
     &sendValue<&Service::setCpuRendering, bool>},
    {Setting::Dpi, "dpi_spinbox", Control::Number, QT_TRANSLATE_NOOP("BasicPage", "Display DPI"),
     QT_TRANSLATE_NOOP("BasicPage", "Range 96-480"),
     QT_TRANSLATE_NOOP("BasicPage", "How large programs draw text and windows; 96 is 100 %, 192 is 200 %."),
     &sendValue<&Service::setDPI, int>},
    {Setting::Dxvk, "dxvk_versions_combobox", Control::Component, QT_TRANSLATE_NOOP("BasicPage", "dxvk"), "",
     QT_TRANSLATE_NOOP(
         "BasicPage",
         "Draws Direct3D 9 to 11 through a graphics driver with Vulkan, which makes games faster."),
     &sendComponent<&Service::setDxvk>},
    {Setting::Vkd3d, "vkd3d_versions_combobox", Control::Component, QT_TRANSLATE_NOOP("BasicPage", "vkd3d"),
     "", QT_TRANSLATE_NOOP("BasicPage", "Draws Direct3D 12 through a graphics driver with Vulkan."),
     &sendComponent<&Service::setVkD3D>},
    {Setting::WindowsVersion, "window_version_combobox", Control::Choice,
     QT_TRANSLATE_NOOP("BasicPage", "Windows version"), "",
     QT_TRANSLATE_NOOP("BasicPage", "The version of Windows that programs believe they run on."),
     &sendValue<&Service::setWindowsVersion, QString>},
    {Setting::Runner, "wine_version_combobox", Control::Component,
     QT_TRANSLATE_NOOP("BasicPage", "Wine version"), "",
     QT_TRANSLATE_NOOP("BasicPage",
                       "The Wine that runs the programs of this container: one that fails with one version "
                       "may run with another."),
     &sendComponent<&Service::setRunner>},
    {Setting::MemOptimized, "mem_optimized_switch_btn", Control::Switch,
     QT_TRANSLATE_NOOP("BasicPage", "Memory optimization"), "",
     QT_TRANSLATE_NOOP("BasicPage", "Programs take less memory."),
     &sendValue<&Service::setMemOptimized, bool>},
    {Setting::NtSync, "ntsync_switch_btn", Control::Switch, QT_TRANSLATE_NOOP("BasicPage", "NTSync"),
     QT_TRANSLATE_NOOP("BasicPage",
                       "Optimize the operational efficiency in high-concurrency scenarios such as gaming"),
     QT_TRANSLATE_NOOP("BasicPage", "The kernel itself does what programs wait for each other with."),
     &sendValue<&Service::setNTSync, bool>},
}};

}  // namespace

const std::array<SettingInfo, size_t(SettingCount)>& SettingTable::all() {
    return Table;
}

const SettingInfo& SettingTable::of(Setting setting) {
    return Table[size_t(setting)];
}

QString SettingTable::label(Setting setting) {
    return QCoreApplication::translate("BasicPage", of(setting).label);
}

QString SettingTable::componentKind(Setting setting) {
    switch (setting) {
        case Setting::Runner:
            return ComponentKind::runner();
        case Setting::Dxvk:
            return ComponentKind::dxvk();
        case Setting::Vkd3d:
            return ComponentKind::vkd3d();
        default:
            return {};
    }
}

bool SettingTable::settingOfKind(const QString& kind, Setting* setting) {
    for (const SettingInfo& info : Table) {
        if (info.control == Control::Component && componentKind(info.setting) == kind) {
            *setting = info.setting;
            return true;
        }
    }
    return false;
}
