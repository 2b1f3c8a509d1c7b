#pragma once

#include <QStringList>

class QJsonObject;

/// The runners that run 32-bit programs without 32-bit packages of the system, and the choice among them.
struct RunnerChoice {
    QStringList installed;
    QStringList supported;  ///< available for download

    /// Reads the service's answer.
    static RunnerChoice of(const QJsonObject& runners);

    /// For the new bottle of a 32-bit program: the preferred one of those installed; the default runner if
    /// none is installed.
    QString forNewBottle() const;
    /// For a bottle whose runner cannot run its 32-bit program: an installed runner if there is one, else one
    /// to download. Empty if there is none.
    QString forRepair() const;
    bool isInstalled(const QString& runner) const { return installed.contains(runner); }
};
