#pragma once

#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <QVector>

/// Takes out of a text that leaves the machine what says whose it is: the home directory, the names of the
/// user and of the machine, and passwords in addresses. Knows them as Unix and Windows paths have them, as
/// Wine, JSON and YAML escape them, and encoded as in a URL. A value; for any thread.
class LogScrub {
public:
    struct Identity {
        QStringList homes;  ///< absolute paths of the home directory, also those that links in it stand for
        QString user;
        QString host;

        /// Of this process. Resolves links.
        static Identity current();
    };

    explicit LogScrub(const Identity& identity = Identity::current());

    /// The text in any encoding that has ASCII in it; what is not replaced stays byte for byte. The time is
    /// proportional to the length, the memory to some ten times of it.
    QByteArray scrubbed(const QByteArray& text) const;
    QString scrubbed(const QString& text) const;

private:
    struct Rule {
        QRegularExpression pattern;  ///< over bytes, one a character
        QString replacement;
    };
    void add(const QString& pattern, const char* replacement);

    QVector<Rule> m_rules;
};
