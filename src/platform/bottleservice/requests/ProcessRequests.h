#pragma once

#include <QObject>

#include "bottleservice/result/Answer.h"
#include "bottleservice/wine/ProgramWatch.h"
#include "bottleservice/wine/RunMonitor.h"

class BottleEngine;

/// The requests about processes in bottles: which programs run, starting commands, ending. Owned by
/// BottleService; lives in the main thread.
class ProcessRequests : public QObject {
    Q_OBJECT

public:
    explicit ProcessRequests(BottleEngine* engine, QObject* parent = nullptr);

    /// Starts following running programs.
    void watchPrograms();
    bool isIdle() const { return m_watch.isIdle() && m_runs.isIdle(); }

    /// The entered programs that run, as a JSON array.
    Answer running();
    /// Programs were entered, changed or removed.
    void onProgramsChanged();

    void killProgram(const QString& bottle, const QString& programId, const Reply& reply);
    void killWineServer(const QString& bottle, const Reply& reply);
    void runCommand(const QString& bottle, const QString& commandLine, const Reply& reply);

Q_SIGNALS:
    /// The last process with the program's id has ended, also when the program is not entered any more.
    void programExited(const QString& bottle, const QString& programId);
    /// An entered program runs or has ended, however it was started.
    void programStarted(const QString& bottle, const QString& programId);
    void programEnded(const QString& bottle, const QString& programId);

private:
    Answer startCommand(const QString& bottle, const QStringList& arguments);

    BottleEngine* m_engine;
    ProgramWatch m_watch;
    RunMonitor m_runs;
};
