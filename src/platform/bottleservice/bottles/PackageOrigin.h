#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <atomic>

#include "bottleservice/result/Reason.h"

/// Bottles that were made from an installed package (docs/PACKAGES.md), and what has become of that. Such a
/// bottle has the directory ".package"; the package's own files lie in /opt/apps/PACKAGE/files.
namespace PackageOrigin {

/// What a look at a bottle and at its package has found.
struct Facts {
    enum class Package { Present, Missing, Unreadable };

    bool isMarked = false;  ///< the bottle says that it was made from a package
    QString package;        ///< its name; empty when it cannot be read
    Package place = Package::Unreadable;
};

/// Only Removed is offered to the user: what is not known is taken for an ordinary bottle.
enum class State { Own, Installed, Removed, Unknown };
State stateOf(const Facts& facts);

/// Reads a bottle's mark and looks for its package. May block on a slow disk; for worker threads.
Facts look(const QString& directory, const QString& packages = "/opt/apps");

/// Where the files lie that the bottle shares with its installed package, by links; empty for any other
/// bottle.
QString sharedFiles(const QString& directory, const QString& packages = "/opt/apps");

/// The ids of the programs whose files do not exist, as those that were links into a removed package.
QStringList lostPrograms(const QString& directory, const QJsonObject& programs);

/// Replaces the bottle's links to files of the package by copies of these; removes those that lead nowhere.
/// Blocks for long. After a failure, also Reason::Cancelled, a second call goes on.
Reason dropLinks(const QString& directory, const QString& package, const std::atomic_bool& cancelled,
                 const QString& packages = "/opt/apps");

/// Makes the bottle an ordinary one. Does nothing to a bottle that is one.
Reason forget(const QString& directory);

}  // namespace PackageOrigin
