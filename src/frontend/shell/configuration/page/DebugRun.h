#pragma once

#include <QJsonObject>
#include <QObject>
#include <QPointer>

#include "launch/script/WineLauncher.h"
#include "shell/configuration/rules/EntryList.h"
#include "widgets/LogLineReader.h"

/// One program at a time, started from the configuration window with what Wine prints on it. A program goes
/// on when its run is destroyed: only stop() ends it. GUI thread.
class DebugRun : public QObject {
    Q_OBJECT
public:
    struct Request {
        QString bottle;
        QJsonObject record;  ///< of the bottle
        ProgramEntry program;
        QStringList environment;  ///< "KEY=value"
        QString logPath;          ///< where the log is kept, too, when the run has ended; may be empty
        bool inTerminal = false;
    };

    explicit DebugRun(QObject* parent);
    ~DebugRun() override;

    bool isRunning() const { return m_launcher; }
    /// Does nothing while a run is under way.
    void start(const Request& request);
    /// Ends the program.
    void stop();

Q_SIGNALS:
    void line(const QString& text, bool isError);
    void started();
    /// Once for each start. The text is for the user; empty when the program was started.
    void ended(const QString& errorText);
    /// The log could not be kept.
    void failed(const QString& errorText);

private:
    void readLines(const QStringList& lines);
    void keepLog();
    void finish(WineLauncher* launcher, const QString& errorText);

    QPointer<WineLauncher> m_launcher;
    LogLineReader m_reader;
    ProgramRef m_ref;
    QString m_logPath;      ///< of the running program
    QString m_keptLogPath;  ///< where the user wants it; may be empty
};
