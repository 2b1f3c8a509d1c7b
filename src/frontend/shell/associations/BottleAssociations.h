#pragma once

#include <QJsonObject>
#include <QStringList>
#include <QVector>

/// The file types and link schemes that the programs of a bottle open ("assosiate.json" in the bottle,
/// written by the service) and which of them are exported to the desktop. All texts come from Windows
/// programs and are untrusted. For any thread; files are read at each call, and one that cannot be read
/// counts as empty.
namespace BottleAssociations {

struct Row {
    QString key;  ///< an extension with its dot, or a link scheme
    QString application;
    QString icon;  ///< path of the icon's file, as the program says
    bool chosen = false;
};

/// By key. Without link schemes on systems after version 22, which handle links by themselves.
QJsonObject read(const QString& bottlePath);
QJsonObject read(const QString& bottlePath, int systemVersion);

/// The exported keys, from "exported_associations.json" beside the bottles.
QStringList exported(const QString& bottle);

/// In the order of the keys; the exported ones are chosen.
QVector<Row> rows(const QJsonObject& associations, const QStringList& exported);

}  // namespace BottleAssociations
