#pragma once

#include <QJsonObject>
#include <QStringList>
#include <QVector>

/// The kinds of files and links that a bottle's programs open, and which of them the desktop knows of. The
/// texts come from Windows programs: to show, nothing to trust.
namespace BottleAssociations {

struct Row {
    QString key;  ///< an extension with its dot, or the scheme of a link
    QString application;
    QString icon;  ///< what is said to be the icon's file
    bool chosen = false;
};

/// By key. Systems after version 22 handle links by themselves: theirs are left out there.
QJsonObject read(const QString& bottlePath);
QJsonObject read(const QString& bottlePath, int systemVersion);

/// The keys that were exported before, from "exported_associations.json" beside the bottles.
QStringList exported(const QString& bottle);

/// In the order of the keys; what was exported is chosen.
QVector<Row> rows(const QJsonObject& associations, const QStringList& exported);

}  // namespace BottleAssociations
