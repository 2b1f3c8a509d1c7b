#pragma once

#include <QDateTime>
#include <QString>
#include <memory>

/// The file that carries what a user suggests with a rating to the upload (LogUpload). The object owns the
/// file: it is removed with it. For any thread.
class SuggestionFile {
public:
    static const char CommonDirectory[];

    /// Writes a new file, readable by this user alone, and never through a link or over a file. It lies in
    /// `common`, a place where everybody can write: that is made when it does not exist, and not used when
    /// somebody else has made it or it is a link. Then the file lies in a directory of this user's own.
    /// Returns null, with a warning, when it can be written nowhere.
    static std::shared_ptr<SuggestionFile> write(const QString& common, const QString& name,
                                                 const QString& text);
    ~SuggestionFile();
    Q_DISABLE_COPY(SuggestionFile)

    const QString& directory() const { return m_directory; }
    const QString& path() const { return m_path; }

    /// "NAME_suggestion_TIME.log". Of the name, which is untrusted, only letters, digits, blanks, points,
    /// dashes and underscores are left.
    static QString nameFor(const QString& appName, const QDateTime& time);
    /// Removes this user's suggestions from such a common place that a killed process has left there: those
    /// older than an hour. They are not sent.
    static void removeLeftOvers(const QString& common);
    /// Whether it is a directory, no link, of this user, where nobody else can write.
    static bool isPrivate(const QString& directory);

private:
    SuggestionFile(const QString& directory, const QString& path) : m_directory(directory), m_path(path) {}

    const QString m_directory;
    const QString m_path;
};
