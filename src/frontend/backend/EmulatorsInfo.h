#pragma once

#include <QMap>
#include <QString>

/// The emulators for x86 code on this machine, name to description, and the one that a bottle uses.
struct EmulatorsInfo {
    QMap<QString, QString> installed;
    QString usingName;  ///< empty when the bottle uses none
};
