#pragma once

#include <QMap>
#include <QSet>
#include <QStringList>

#include "bottleservice/components/OfflineList.h"
#include "bottleservice/result/Reason.h"

class Recipes;
class Sources;

/// What can be decided about components and their files without the network and without a bottle.
namespace OfflineCheck {

struct Verdict {
    QStringList valid;                   ///< in the order in which they were given
    QMap<QString, QStringList> missing;  ///< component to those that it lacks, itself or needed ones
};

/// Which components can be installed when there are only these files. An unknown component lacks itself.
Verdict verdict(const QStringList& names, const QSet<QString>& files, const Recipes& recipes);

/// The files in the directory of downloads that may be what this machine knows under their names, by their
/// sizes; that they are, an installation checks.
QSet<QString> usableFiles(const QString& directory, const Sources& sources);

/// All components that this one needs, in the order of their installation; empty for an unknown one.
QStringList needed(const QString& name, const Recipes& recipes);

/// The names without doubles, each behind those that it needs.
QStringList inOrder(const QStringList& names, const Recipes& recipes);

/// Why a file of the list cannot be what this machine knows under its name; empty when all may be.
/// `archive` is for the reason.
Reason conflict(const OfflineList& list, const Sources& sources, const QString& archive);

}  // namespace OfflineCheck
