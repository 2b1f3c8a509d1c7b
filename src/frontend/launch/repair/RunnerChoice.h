#pragma once

#include <QStringList>

class QJsonObject;

/// The runners on which 32-bit programs run without 32-bit packages of the machine, and which of them a
/// program gets.
struct RunnerChoice {
    QStringList installed;
    QStringList supported;  ///< that can be fetched

    /// From what the service tells.
    static RunnerChoice of(const QJsonObject& runners);

    /// For the new bottle of a 32-bit program: the default runner unless another one that is installed is
    /// known to be better.
    QString forNewBottle() const;
    /// For a bottle whose runner does not run its 32-bit program: what is installed comes before what has to
    /// be fetched. Empty when there is none.
    QString forRepair() const;
    bool isInstalled(const QString& runner) const { return installed.contains(runner); }
};
