#pragma once

#include <QHash>
#include <QObject>

#include "shell/configuration/hints/HintSearch.h"

class BottlePrograms;
class BottleSettings;
class DebuggingLogsFrame;
class LiveLog;
class ProgramTrials;
class WineParamsCfgWidget;

/// What the log pane shows: the debugging run under way and the hints after it; without one, the last log of
/// the current program. GUI thread; waits for nothing.
class ProgramFindings : public QObject {
    Q_OBJECT
public:
    struct Parts {
        BottleSettings* settings;
        BottlePrograms* programs;
        ProgramTrials* trials;
        const WineParamsCfgWidget* parameters;
        DebuggingLogsFrame* frame;
    };

    ProgramFindings(const Parts& parts, QObject* parent);

    /// The pane is visible now. Until then no log is read.
    void showLast();
    /// The last log is another one than before.
    void readAgain();
    /// What was printed, as a debugging run prints it: in whatever pieces.
    void append(const QString& text);

private:
    void onRunStarted(const QString& programId);
    void stopReading();
    void onCurrentChanged();
    void readLast(const QString& programId, const QString& logPath);
    void look(const QString& programId, const QString& logPath, bool isAfterRun);
    bool hasLaunchResult(const QString& programId) const;

    const Parts m_parts;
    HintSearch m_search;
    LiveLog* m_lastLog = nullptr;
    LiveLog* m_appended = nullptr;   ///< since the first append()
    int m_reads = 0;                 ///< of last logs; only the newest one counts
    QHash<QString, bool> m_results;  ///< of the runs of this window, by program: whether one came up
    QString m_shownProgram;          ///< the program whose log the pane shows
    bool m_isShown = false;          ///< showLast() was called
    QString m_runProgram;            ///< of the run under way, or the last one
    bool m_hasLaunchResult = false;  ///< of that run
};
