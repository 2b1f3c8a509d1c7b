#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <vector>

/// The table that says which files belong into a shared bottle: a JSON array of rules, each with the "bottle"
/// ("public/...") and one or more of
///   "md5sum":   array of texts, one of which must be the file's md5;
///   "filename": array of wildcards, one of which must match the file's name;
///   "peinfo":   object, key of the file's inspection to wildcard over its value.
/// All conditions of a rule must hold; case never matters; the first rule that matches wins. A rule that is
/// wrong is skipped with a log line.
class PublicBottles {
public:
    static PublicBottles parse(const QByteArray& json);

    /// The table of a file. A missing file is an empty table.
    static PublicBottles load(const QString& file);

    /// The bottle for a file that is described by "filename", "md5sum" and "peinfo"; empty for none.
    QString bottleFor(const QJsonObject& query) const;

private:
    std::vector<QJsonObject> m_rules;
};
