#pragma once

#include <QObject>

#include "launch/repair/ProgramFixRecord.h"

/// Looks into the log of a stored program that was started without anybody watching it and has failed, and
/// offers the repair as a desktop notification, whose action starts this program again with --fixup. Made on
/// the stack by whoever sees the program end, used once and dropped.
class ProgramAppFixer : public QObject {
    Q_OBJECT
public:
    ProgramAppFixer(const QString& bottlesName, const QString& programUuid, bool notifyUser,
                    QObject* parent = nullptr);

    /// Blocks: asks the service for the bottle, reads at most 10 MiB of log and waits until the notification
    /// has been taken. Empty without a bottle, without a log, and when the log asks for no component. A
    /// notification that fails is only logged.
    ProgramFixRecord checkProgram();

    /// The log of a program of a bottle, by the bottle's record; empty when there is none that could be read.
    static QString logOf(const QJsonObject& bottle, const QString& programUuid);

Q_SIGNALS:
    /// The log asks for components. Comes before checkProgram returns.
    void fixComponentsFetched(const QString& programId, const QStringList& missingComponents);

private:
    void notify(const QString& programName, const QStringList& components) const;

    QString m_bottlesName;
    QString m_programUuid;
    bool m_notifyUser;
};
