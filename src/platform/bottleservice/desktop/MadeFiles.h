#pragma once

#include <QJsonObject>
#include <QMap>
#include <QString>
#include <optional>

/// The files that the service has made for bottles outside of them: menu and desktop entries, MIME types.
/// Each is recorded before it is made, in "made-files.json" of the data directory,
///   {"<bottle>": {"<owner>": ["<path>", ...]}}
/// so that it can be removed with its owner or bottle, also after a crash. Only regular files that are
/// recorded and have a name of the service's own are ever removed.
class MadeFiles {
public:
    explicit MadeFiles(const QString& dataDir) : m_file(dataDir + "/made-files.json") {}

    /// The beginning of the names of files that belong to the bottle.
    static QString prefixOf(const QString& bottle);

    using Contents = QMap<QString, QByteArray>;  ///< by path

    /// Makes these files and removes all others of the owner; existing ones are replaced. The owner is the id
    /// of a program or a word of the service's own. On failure false with an error text; some files may then
    /// have been made, and all are recorded.
    bool make(const QString& bottle, const QString& owner, const Contents& files, bool isExecutable,
              QString* error);

    /// Removes the owner's files, or all of the bottle. Files that cannot be removed stay in the record.
    void undo(const QString& bottle, const QString& owner);
    void undo(const QString& bottle);

    /// The owner's files that still exist.
    QStringList existing(const QString& bottle, const QString& owner) const;
    QStringList bottles() const { return load().value_or(QJsonObject()).keys(); }

    /// Removes unfinished files that a kill has left.
    void removeUnfinished() const;

private:
    /// Nothing when the record cannot be read now. An invalid record is renamed and counts as empty.
    std::optional<QJsonObject> load() const;
    bool record(const QString& bottle, const QString& owner, const QStringList& paths, QString* error) const;

    QString m_file;
};
