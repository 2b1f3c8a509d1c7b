#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <vector>

/// The table of files that are opened in a shared bottle: a JSON array of rules, each with the "bottle"
/// ("public/...") and one or more of
///   "md5sum":   array of texts, one of which must be the file's md5;
///   "filename": array of wildcards, one of which must match the file's name;
///   "peinfo":   object, key of the file's inspection to wildcard over its value.
/// All conditions of a rule must hold; case does not matter; the first matching rule counts. An invalid rule
/// is skipped and logged.
class PublicBottles {
public:
    static PublicBottles parse(const QByteArray& json);

    /// Reads the table from a file. A missing file is an empty table.
    static PublicBottles load(const QString& file);

    /// The bottle for a file that is described by "filename", "md5sum" and "peinfo"; empty if no rule
    /// matches.
    QString bottleFor(const QJsonObject& query) const;

private:
    std::vector<QJsonObject> m_rules;
};
