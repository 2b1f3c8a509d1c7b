#pragma once

#include <QStringList>

#include "shell/configuration/rules/SettingValues.h"

/// What the machine's graphics can do for dxvk and vkd3d.
struct GraphicsSupport {
    bool isKnown = false;  ///< false until the machine has been asked: everything is offered
    bool hasDriver = false;
    int dxvkLevel = 0;  ///< 0: none, 1: dxvk 1.x only, 2: all versions
    bool hasVkd3d = false;
};

/// The entries of a component's list.
struct ComponentOffer {
    QStringList values;  ///< an empty one stands for "Disabled"
    QString obstacle;    ///< why no version is offered, for the user; empty otherwise

    /// `current` is always among the values. Duplicates are left out.
    static ComponentOffer of(Setting setting, const QStringList& installed, const QStringList& supported,
                             const QString& current, const GraphicsSupport& graphics);

    /// Proton runners need an environment of their own, and run 32-bit programs with the system's drivers.
    static bool isProtonName(const QString& runner);
};
