#pragma once

#include <QElapsedTimer>
#include <QWidget>

#include "programs/Program.h"

class RunStateButton;
struct FailedStart;

/// One program on a tile or a card: starts and quits it and follows its state.
class AppItemWidget : public QWidget {
    Q_OBJECT
public:
    AppItemWidget(const ProgramPtr& program, QWidget* parent);

    const ProgramPtr& program() const { return m_program; }
    const ProgramRef& ref() const { return m_program->ref; }
    bool isRunning() const;
    /// Why the last start has failed; null while the program runs, and when it has not failed.
    const FailedStart* failedStart() const;
    virtual void refreshRunState();

Q_SIGNALS:
    void appStarsUpdate(const QString& appName, int score);
    void message(const QString& sentence, bool failed);

public Q_SLOTS:
    void onStartButtonClicked(bool inTerminal);
    void onStopButtonClicked();
    /// Starts the program, or brings the window of one that runs to the front.
    void activate();
    /// Of a program whose last start has failed.
    void repair();

protected:
    RunStateButton* runButton() const { return m_runButton; }

    ProgramPtr m_program;

private:
    RunStateButton* m_runButton;
    QElapsedTimer m_sinceClick;
};
