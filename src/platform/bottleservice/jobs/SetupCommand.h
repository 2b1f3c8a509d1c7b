#pragma once

#include <QJsonObject>
#include <QPointer>

#include "bottleservice/result/Reason.h"
#include "bottleservice/wine/Runners.h"
#include "manifest/Manifest.h"

class WineCommand;

/// Runs a command of a manifest in a bottle that is being made: in the bottle's Wine, without a shell, for
/// half an hour at most, with the settings of the bottle and without Wine's questions about Mono and Gecko,
/// which would block it. Wine's start.exe, which also runs native programs, and its way to the user's browser
/// and menus are switched off. What the command has started may run on. Owned by SetupBottleJob; lives in the
/// main thread.
class SetupCommand : public QObject {
    Q_OBJECT

public:
    /// `record` is the bottle's, as it is to be.
    SetupCommand(const Runner& runner, const QString& bottlePath, const QJsonObject& record,
                 const Manifest::Command& command, QObject* parent = nullptr);

    void start();
    /// Ends the work; finished() follows with a reason.
    void cancel();

    /// WINEDLLOVERRIDES of a command in a bottle that has these overrides.
    static QString overrides(const QString& ofBottle);

Q_SIGNALS:
    /// Exactly once after start(); an empty reason is success.
    void finished(const Reason& reason);

private:
    QProcessEnvironment environment() const;

    Runner m_runner;
    QString m_bottlePath;
    QJsonObject m_record;
    Manifest::Command m_command;
    QPointer<WineCommand> m_process;
};
