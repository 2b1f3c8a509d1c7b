#pragma once

#include <QCoreApplication>
#include <QStringList>

class LogScrub;

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

    QString text(const LogScrub& scrub) const;
};
