#pragma once

#include <QObject>

#include "launch/repair/ProgramFixRecord.h"

/// Checks the log of a stored program that failed without a monitor, and offers the repair as a desktop
/// notification, whose action starts the program again with --fixup. Create it on the stack when the program
/// ends, and use it once.
class ProgramAppFixer : public QObject {
    Q_OBJECT
public:
    ProgramAppFixer(const QString& bottlesName, const QString& programUuid, bool notifyUser,
                    QObject* parent = nullptr);

    /// Blocks: asks the service for the bottle, reads at most 10 MiB of log and waits until the notification
    /// is sent. Empty without a bottle, without a log, or if the log asks for no component. A failed
    /// notification is only logged.
    ProgramFixRecord checkProgram();

    /// The log file of a program, according to the bottle's record; empty if it can't be read.
    static QString logOf(const QJsonObject& bottle, const QString& programUuid);

Q_SIGNALS:
    /// The log asks for components; emitted before checkProgram() returns.
    void fixComponentsFetched(const QString& programId, const QStringList& missingComponents);

private:
    void notify(const QString& programName, const QStringList& components) const;

    QString m_bottlesName;
    QString m_programUuid;
    bool m_notifyUser;
};
