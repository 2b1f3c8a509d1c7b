#pragma once

#include <QJsonObject>
#include <QString>

/// The bottle that a file is to run in: the shared one that the service names for it, else its own. Waits
/// for the service; may run on any thread, since it works on values only.
QString chooseBottle(const QString& exePath, const QJsonObject& peInfo, const QString& md5);
