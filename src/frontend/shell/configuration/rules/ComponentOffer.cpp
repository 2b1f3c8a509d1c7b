#include "shell/configuration/rules/ComponentOffer.h"

#include <QCoreApplication>
#include <QRegularExpression>

namespace {

QString tr(const char* text) {
    return QCoreApplication::translate("ComponentsSwitcherWidget", text);
}

QString obstacleOf(Setting setting, const GraphicsSupport& graphics) {
    if (setting == Setting::Runner || !graphics.isKnown)
        return {};
    if (!graphics.hasDriver)
        return tr("Vulkan driver not installed");
    if (setting == Setting::Dxvk && graphics.dxvkLevel == 0)
        return tr("Your devices not support dxvk");
    if (setting == Setting::Vkd3d && !graphics.hasVkd3d)
        return tr("Your devices not support vkd3d");
    return {};
}

bool needsDxvk2(QString version) {
    static const QRegularExpression letters("[a-z\\-]");
    return version.remove(letters).startsWith('2');
}

}  // namespace

ComponentOffer ComponentOffer::of(Setting setting, const QStringList& installed, const QStringList& supported,
                                  const QString& current, const GraphicsSupport& graphics) {
    ComponentOffer offer;
    offer.obstacle = obstacleOf(setting, graphics);
    if (setting != Setting::Runner)
        offer.values << QString();
    const bool isOldDevice = setting == Setting::Dxvk && graphics.isKnown && graphics.dxvkLevel == 1;
    for (const QString& version : offer.obstacle.isEmpty() ? installed + supported : QStringList()) {
        if (!version.isEmpty() && !(isOldDevice && needsDxvk2(version)))
            offer.values << version;
    }
    if (!offer.values.contains(current))
        offer.values << current;
    offer.values.removeDuplicates();
    return offer;
}

bool ComponentOffer::isProtonName(const QString& runner) {
    return runner.startsWith(QLatin1String("ge-proton")) ||
           runner.startsWith(QLatin1String("lumora-ge-proton"));
}
