#pragma once

#include <QWidget>

class ProgramTrials;
class QPushButton;
class UndoBar;

namespace Fenk {
class IconButton;
}

/// The row at the bottom of the configuration window: shows the log, takes back the last change, starts and
/// stops debugging runs.
class ConfigFoot : public QWidget {
    Q_OBJECT
public:
    explicit ConfigFoot(ProgramTrials* trials, QWidget* parent = nullptr);

    UndoBar* undoBar() const { return m_undo; }
    void setLogShown(bool shown);
    /// Whether there is a program to run.
    void setHasProgram(bool has);

Q_SIGNALS:
    void runRequested();
    void logToggled();

private:
    void refresh();

    ProgramTrials* m_trials;
    UndoBar* m_undo;
    QPushButton* m_debug;
    QPushButton* m_stop;
    Fenk::IconButton* m_toggleLogs;
    bool m_hasProgram = false;
};
