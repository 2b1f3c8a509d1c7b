#pragma once

#include <QJsonObject>
#include <QMap>
#include <QString>
#include <optional>

/// The files that the service has made for bottles outside of them: entries of menus and desktops, MIME
/// types. Each is recorded before it is made, in "made-files.json" of the service's directory
///   {"<bottle>": {"<owner>": ["<path>", ...]}}
/// so that it can be taken back when its owner or the bottle goes, also after a crash. Only what stands in
/// the record, is a regular file and has a name of the service's own is ever removed.
class MadeFiles {
public:
    explicit MadeFiles(const QString& dataDir) : m_file(dataDir + "/made-files.json") {}

    /// The beginning of a file name that belongs to the bottle.
    static QString prefixOf(const QString& bottle);

    using Contents = QMap<QString, QByteArray>;  ///< by path

    /// Makes these files the owner's only ones: others that it has are removed, those of the same path
    /// replaced. False with a sentence; then some may be made, and all are recorded. The owner is the id of a
    /// program or a word of the service's own.
    bool make(const QString& bottle, const QString& owner, const Contents& files, bool isExecutable,
              QString* error);

    /// Removes what was made. What cannot be removed stays in the record.
    void undo(const QString& bottle, const QString& owner);
    void undo(const QString& bottle);

    /// What the owner has, as far as it still exists.
    QStringList existing(const QString& bottle, const QString& owner) const;
    QStringList bottles() const { return load().value_or(QJsonObject()).keys(); }

    /// Removes what a kill has left beside the files.
    void removeUnfinished() const;

private:
    /// Nothing when there is a record that cannot be read now. One that makes no sense is set aside.
    std::optional<QJsonObject> load() const;
    bool record(const QString& bottle, const QString& owner, const QStringList& paths, QString* error) const;

    QString m_file;
};
