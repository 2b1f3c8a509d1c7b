#include "shell/configuration/rules/ComponentOffer.h"

#include <QCoreApplication>

namespace {

QString obstacleOf(Setting setting, const GraphicsFacts& graphics) {
    if (setting == Setting::Runner || !graphics.isKnown)
        return {};
    if (!graphics.hasDriver)
        return QCoreApplication::translate("ComponentsSwitcherWidget", "Vulkan driver not installed");
    if (setting == Setting::Dxvk && graphics.dxvk == DxvkSupportResult::DontSupport)
        return QCoreApplication::translate("ComponentsSwitcherWidget", "Your devices not support dxvk");
    if (setting == Setting::Vkd3d && !graphics.hasVkd3d)
        return QCoreApplication::translate("ComponentsSwitcherWidget", "Your devices not support vkd3d");
    return {};
}

}  // namespace

ComponentOffer ComponentOffer::of(Setting setting, const QStringList& installed, const QStringList& supported,
                                  const QString& current, const GraphicsFacts& graphics) {
    ComponentOffer offer;
    offer.obstacle = obstacleOf(setting, graphics);
    if (setting != Setting::Runner)
        offer.values << QString();
    QStringList versions = offer.obstacle.isEmpty() ? installed + supported : QStringList();
    if (setting == Setting::Dxvk && graphics.isKnown)
        versions = GraphicsVerdicts::usableDxvkVersions(graphics.dxvk, versions);
    versions.removeAll({});
    offer.values << versions;
    const bool isUnset = setting == Setting::Runner && current.isEmpty();
    if (!isUnset && !offer.values.contains(current))
        offer.values << current;
    offer.values.removeDuplicates();
    return offer;
}
