#pragma once

#include <QJsonObject>
#include <QString>

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

    /// Writes the file, which replaces one of the same name that was recorded before. False with a sentence.
    /// The owner is the id of a program or a word of the service's own.
    bool make(const QString& bottle, const QString& owner, const QString& path, const QByteArray& content,
              bool isExecutable, QString* error);

    /// Removes what was made. How many files are gone.
    int undo(const QString& bottle, const QString& owner);
    int undo(const QString& bottle);

    bool has(const QString& bottle, const QString& owner) const;
    QStringList bottles() const { return load().keys(); }

private:
    QJsonObject load() const;
    bool save(const QJsonObject& record, QString* error) const;

    QString m_file;
};
