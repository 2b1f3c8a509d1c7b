#pragma once

#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <QVector>

/// Takes out of a text that leaves the machine what says whose it is: home directories, the names of the user
/// and of the machine, and passwords and the like in addresses. Knows them as Unix and Windows paths have
/// them, as Wine, JSON and YAML escape them, encoded as in a URL, and as Chinese Windows programs write them.
/// Names that are short or words are known only where a name stands. A value; for any thread.
class LogScrub {
public:
    struct Identity {
        QStringList homes;  ///< absolute paths of the home directory, also those that links in it stand for
        QString user;
        QString host;
        QString realName = {};

        /// Of this process. Resolves links, and asks the system for the user's name once.
        static Identity current();
    };

    explicit LogScrub(const Identity& identity = Identity::current());

    /// The text in any encoding that has ASCII in it; what is not replaced stays byte for byte, but UTF-16
    /// becomes UTF-8. The time is proportional to the length, the memory to some ten times of it.
    QByteArray scrubbed(const QByteArray& text) const;
    QString scrubbed(const QString& text) const;

private:
    struct Rule {
        QRegularExpression pattern;  ///< over bytes, one a character
        QString replacement;
    };
    void add(const QString& pattern, const char* replacement);
    void addSecrets();
    void addUser(const Identity& identity);

    QVector<Rule> m_rules;
};
