#include "shell/configuration/rules/SettingValues.h"

#include <QDebug>

#include "backend/BottleRecord.h"
#include "core/base/WineNames.h"

QVector<SettingChoice> SettingChoices::of(Setting setting) {
    static const QVector<SettingChoice> renderers{{"gl", "opengl"}, {"gdi", "gdi"}, {"vulkan", "vulkan"}};
    static const QVector<SettingChoice> versions{{"win11", "Windows 11"},
                                                 {"win10", "Windows 10"},
                                                 {"win81", "Windows 8.1"},
                                                 {"win7", "Windows 7"},
                                                 {"winxp", "Windows XP"}};
    return setting == Setting::Renderer         ? renderers
           : setting == Setting::WindowsVersion ? versions
                                                : QVector<SettingChoice>();
}

QString SettingChoices::textOf(Setting setting, const QString& value) {
    for (const SettingChoice& choice : of(setting)) {
        if (choice.value == value)
            return choice.text;
    }
    return {};
}

SettingValues::SettingValues() {
    for (int i = 0; i < SettingCount; ++i)
        m_values[size_t(i)] = standard(Setting(i));
}

QVariant SettingValues::standard(Setting setting) {
    switch (setting) {
        case Setting::Renderer:
            return QString("gl");
        case Setting::Dpi:
            return SettingChoices::MinimumDpi;
        case Setting::Dxvk:
        case Setting::Vkd3d:
            return QString();
        case Setting::WindowsVersion:
            return QString("win10");
        case Setting::Runner:
            return WineNames::defaultRunner();
        default:
            return false;
    }
}

void SettingValues::read(const QJsonObject& record) {
    const QString renderer = BottleRecord::renderer(record);
    const QString rendererText = SettingChoices::textOf(Setting::Renderer, renderer);
    if (rendererText.isEmpty())
        qWarning() << "unknown renderer value from config" << renderer;
    else
        set(Setting::Renderer, renderer);

    const QString stored = BottleRecord::windows(record);
    const QString windows = stored == QLatin1String("winxp64") ? QString("winxp") : stored;
    const QString windowsText = SettingChoices::textOf(Setting::WindowsVersion, windows);
    if (windowsText.isEmpty())
        qWarning() << "unknown windows version from config" << windows;
    else
        set(Setting::WindowsVersion, windows);

    const int dpi = BottleRecord::customDpi(record);
    set(Setting::Dpi, qBound(SettingChoices::MinimumDpi, dpi, SettingChoices::MaximumDpi));
    set(Setting::CpuRendering, BottleRecord::cpuRendering(record));
    set(Setting::DiscreteGpu, BottleRecord::hasDiscreteGpu(record) && BottleRecord::discreteGpu(record));
    set(Setting::MemOptimized, BottleRecord::memOptimized(record, false));
    set(Setting::NtSync, BottleRecord::ntsync(record));
    set(Setting::Dxvk, BottleRecord::dxvk(record));
    set(Setting::Vkd3d, BottleRecord::vkd3d(record));
    set(Setting::Runner, BottleRecord::runner(record));
    qInfo().noquote() << "dpi" << dpi << ", d3d renderer" << renderer << "->" << rendererText;
    qInfo().noquote() << "windows version" << windows << "->" << windowsText;
}
