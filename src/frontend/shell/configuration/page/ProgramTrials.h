#pragma once

#include <QHash>
#include <QObject>
#include <memory>

#include "shell/configuration/page/LiveLog.h"
#include "shell/configuration/parameters/EntryParameters.h"

class BottlePrograms;
class BottleSettings;
class DebugRun;

/// The parameters of a bottle's programs as the window edits them, and the debugging runs with them. Edited
/// parameters are saved before a run, and when this object goes. GUI thread; waits for nothing.
class ProgramTrials : public QObject {
    Q_OBJECT
public:
    ProgramTrials(BottleSettings* settings, BottlePrograms* programs, QObject* parent);
    ~ProgramTrials() override;

    /// Of the current program; null without one. They live as long as the window, also when the record
    /// changes.
    std::shared_ptr<EntryParameters> currentParameters();

    /// Whether a run is under way, or is being prepared.
    bool isBusy() const { return m_isPreparing || isRunning(); }
    bool isRunning() const;
    /// Empty without a run, or when the program is no longer in the list.
    QString runningName() const;
    /// Runs the current program. False, with a log line, without one.
    bool start(bool inTerminal);
    void stop();

Q_SIGNALS:
    /// isBusy() or isRunning() has changed.
    void changed();
    void linesRead(const QString& programId, const QVector<LiveLogLine>& lines);
    void runStarted(const QString& programId);
    /// Once for each runStarted(), also when the launch script could not start the program. Not when the
    /// script itself could not be run: linesRead() has told so.
    void runEnded(const QString& programId, const QString& logPath);
    /// Of the current program: it is another one, or its record has changed. Null without a program.
    void parametersChanged(const std::shared_ptr<EntryParameters>& parameters);
    /// For the user.
    void failed(const QString& errorText);

private:
    std::shared_ptr<EntryParameters> parameters(const QString& id);
    void onProgramsChanged();
    void prepare(const QString& id, bool inTerminal);
    void run(const QString& id, bool inTerminal);

    BottleSettings* m_settings;
    BottlePrograms* m_programs;
    DebugRun* m_run;
    bool m_isPreparing = false;
    std::shared_ptr<EntryParameters> m_current;
    QHash<QString, std::shared_ptr<EntryParameters>> m_parameters;  ///< by the program's id
};
