#pragma once

#include <QString>

/// Why the packing script has made no package. The script prints "packager: cause WORD: SUBJECT" before its
/// own, English sentence.
class PackagingFailure {
public:
    /// Takes a line of the script. Returns false if it is none of these.
    bool take(const QString& line);

    /// In the user's language; empty for an unknown cause, for which the script's own sentence stands.
    QString text() const;

private:
    QString m_cause;
    QString m_subject;
};
