#pragma once

#include <QString>
#include <QStringList>

/// What the service has found to be lost of a bottle's Windows files.
struct BottleDamage {
    int count = 0;
    QStringList files;  ///< some of them, relative to the bottle

    /// Whether that can keep a program from starting. A component or a program may have removed a file that
    /// nobody misses; the log tells when one was missed.
    bool isCause(bool isInLog) const;
    /// The file to name to the user; empty where there is none.
    QString worst() const;
};
