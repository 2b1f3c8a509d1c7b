#pragma once

#include <QJsonObject>
#include <QMap>
#include <QString>

/// The emulators for x86 code on this machine, name to description, and the one that a bottle uses.
struct EmulatorsInfo {
    QMap<QString, QString> installed;
    QString usingName;  ///< empty when the bottle uses none

    /// The service's answer.
    static EmulatorsInfo fromObject(const QJsonObject& object) {
        EmulatorsInfo info;
        const QJsonObject installed = object.value("installed").toObject();
        for (auto it = installed.begin(); it != installed.end(); ++it)
            info.installed.insert(it.key(), it.value().toString());
        info.usingName = object.value("using").toString();
        return info;
    }
};
