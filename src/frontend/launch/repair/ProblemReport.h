#pragma once

#include <QCoreApplication>
#include <QStringList>

/// A report about a failed launch for whoever helps the user, as plain text. Fields may be empty; the text
/// then says that they are unknown.
struct ProblemReport {
    Q_DECLARE_TR_FUNCTIONS(ProblemReport)
public:
    static constexpr int LogLines = 200;

    QString program;
    QString programVersion;
    QString cellarix;  ///< version
    QString runner;
    QString wine;  ///< version
    QString system;
    QString session;
    QStringList graphics;
    QString diagnosis;
    QStringList tried;  ///< repairs with their results
    QStringList log;    ///< the newest lines, oldest first

    /// The report, with the user's name and home directory removed everywhere.
    QString text(const QString& home, const QString& user) const;

    /// Removes the home directory, also in its Windows form, and the user's name as a whole word.
    static QString scrubbed(QString text, const QString& home, const QString& user);
};
