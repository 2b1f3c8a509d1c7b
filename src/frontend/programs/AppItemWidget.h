#pragma once

#include <QElapsedTimer>
#include <QWidget>

#include "programs/Program.h"

class RunStateButton;
struct FailedStart;
struct OrphanedBottle;

/// Base of the widgets that show one program, a tile or a card: its run button starts, quits or repairs the
/// program and follows its state. Belongs to its parent; GUI thread.
class AppItemWidget : public QWidget {
    Q_OBJECT
public:
    AppItemWidget(const ProgramPtr& program, QWidget* parent);

    const ProgramPtr& program() const { return m_program; }
    const ProgramRef& ref() const { return m_program->ref; }
    bool isRunning() const;
    /// Why the last start failed. Null while the program runs and after a good start. Not owned.
    const FailedStart* failedStart() const;
    /// Null unless the package that the bottle was made from has been removed. Not owned.
    const OrphanedBottle* orphan() const;
    /// Shows the present state; called on every change of it.
    virtual void refreshRunState();

Q_SIGNALS:
    void appStarsUpdate(const QString& appName, int score);
    /// The program was to be started, and its files have gone with its package.
    void packageMissing();
    /// For the user.
    void message(const QString& text, bool isError);

public Q_SLOTS:
    void onStartButtonClicked(bool inTerminal);
    void onStopButtonClicked();
    /// Starts the program, or raises its window when it runs.
    void activate();
    /// Does nothing unless the last start failed.
    void repair();

protected:
    RunStateButton* runButton() const { return m_runButton; }

    ProgramPtr m_program;

private:
    bool isLost() const;

    RunStateButton* m_runButton;
    QElapsedTimer m_sinceClick;
};
