#pragma once

#include <QProcessEnvironment>
#include <QString>

/// Who makes the packages: a name and an e-mail address, which the packing script takes from the environment
/// as Debian's own tools do. Without both it has names of its own. GUI thread, but for accountName().
struct PackageMaintainer {
    QString name;
    QString address;

    /// What was given last, also when that is nothing; else what the environment has.
    static PackageMaintainer current();
    static bool isGiven();
    void remember() const;

    /// The full name of the user's account; may be empty. Blocks where accounts are on a server.
    static QString accountName();
    /// Whether the script accepts it.
    static bool isAddress(const QString& text);

    /// For the script.
    static QProcessEnvironment environment();
};
