#pragma once

#include <QJsonObject>
#include <QStringList>
#include <QVector>

/// One component of the catalogue.
struct DependencyEntry {
    QString name;
    QString description;
    QString localDescription;  ///< in the user's language, where the catalogue has it
    QStringList dlls;          ///< in lower case, without ".dll"
    QStringList needs;         ///< names of components that are installed first

    /// What a search looks at.
    QString searchText() const;
    QString shownDescription() const;
};

/// The components that can be installed into a bottle, by name. The README of the catalogue describes the
/// files.
namespace DependencyCatalogue {

/// `dllsSearch` maps DLLs to the names of the components that bring them; unknown names are ignored.
QVector<DependencyEntry> merge(const QJsonObject& dependencies, const QJsonObject& dllsSearch);

/// Reads the installed files and the user's own dependency.json, whose entries win. A file that is missing or
/// malformed counts as empty; the latter is logged.
QVector<DependencyEntry> read();

}  // namespace DependencyCatalogue
