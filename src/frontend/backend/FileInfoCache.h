#pragma once

#include <QJsonObject>
#include <QString>
#include <optional>

/// The file fileinfo.cache in a bottle's directory: what the launch record needs of each program, keyed by
/// program id. Read whole, rewritten whole and atomically, in compact JSON. A missing, unreadable or
/// malformed file reads as empty, the last two with a warning. Changes of single programs may come from
/// several threads.
class FileInfoCache {
public:
    struct Entry {
        QString exeName;     ///< "exename": file name of the executable
        QString fileInfo64;  ///< "fileinfo_64": Base64 of the inspection's compact JSON in the local 8-bit
                             ///< encoding
        bool successed = false;  ///< "successed": whether the last launch succeeded
    };

    explicit FileInfoCache(const QString& bottlePath) : m_directory(bottlePath) {}

    QString filePath() const { return m_directory + "/fileinfo.cache"; }
    QJsonObject read() const;
    /// False, with a warning, when the file could not be replaced; the old one is then still there.
    bool write(const QJsonObject& all) const;

    bool contains(const QString& programId) const { return find(programId).has_value(); }
    std::optional<Entry> find(const QString& programId) const;
    Entry entry(const QString& programId) const { return find(programId).value_or(Entry{}); }
    bool setEntry(const QString& programId, const Entry& entry) const;
    /// Writes the file even when it held no such program.
    bool remove(const QString& programId) const;

private:
    /// Nothing for a file that exists and can't be read; it must not be overwritten.
    std::optional<QJsonObject> load() const;

    QString m_directory;
};
