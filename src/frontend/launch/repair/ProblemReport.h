#pragma once

#include <QCoreApplication>
#include <QStringList>

/// What somebody who is to help needs to know of a failed launch, as one text. Facts that are not known are
/// left empty and told as such.
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
    QStringList tried;  ///< repairs, each with its result
    QStringList log;    ///< the newest lines, oldest first

    /// Without the user's name and home directory, wherever they stand.
    QString text(const QString& home, const QString& user) const;

    /// Takes the home directory, in its Windows form too, and the name as a whole word out of a text.
    static QString scrubbed(QString text, const QString& home, const QString& user);
};
