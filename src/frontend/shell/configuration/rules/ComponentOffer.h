#pragma once

#include <QStringList>

#include "probes/GraphicsVerdicts.h"
#include "shell/configuration/rules/SettingValues.h"

/// What the machine's graphics can do for dxvk and vkd3d.
struct GraphicsFacts {
    bool isKnown = false;  ///< false until the machine has been asked: everything is offered
    bool hasDriver = false;
    DxvkSupportResult dxvk = DxvkSupportResult::DontSupport;
    bool hasVkd3d = false;
};

/// The entries of a component's list.
struct ComponentOffer {
    QStringList values;  ///< an empty one stands for "Disabled"
    QString obstacle;    ///< why no version is offered, for the user; empty otherwise

    /// There is nothing to choose.
    bool isBare() const { return !obstacle.isEmpty() && values.size() == 1; }

    /// `current` is always among the values, but for a runner that is not set. Duplicates are left out.
    static ComponentOffer of(Setting setting, const QStringList& installed, const QStringList& supported,
                             const QString& current, const GraphicsFacts& graphics);
};
