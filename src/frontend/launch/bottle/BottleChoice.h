#pragma once

#include <QJsonObject>
#include <QString>

/// The bottle to run a file in: the shared bottle that the service returns for it, else its private bottle.
/// Blocks on the service; thread-safe.
QString chooseBottle(const QString& exePath, const QJsonObject& peInfo, const QString& md5);
