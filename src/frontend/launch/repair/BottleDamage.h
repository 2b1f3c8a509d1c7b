#pragma once

#include <QString>
#include <QStringList>

/// The Windows files that a bottle has lost, as reported by the service.
struct BottleDamage {
    int count = 0;
    QStringList files;  ///< some of the lost files, relative to the bottle

    /// Whether the loss can prevent a program from starting. A component or a program may have removed a file
    /// that nothing needs; `isInLog` says whether the log reports a missing file.
    bool isCause(bool isInLog) const;
    /// The most important lost file, for the user; empty if there is none.
    QString worst() const;
};
