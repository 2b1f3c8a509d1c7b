#pragma once

#include <QElapsedTimer>
#include <QWidget>

#include "shell/library/Program.h"

class RunStateButton;

/// One program on a tile or a card: starts and quits it and follows its state.
class AppItemWidget : public QWidget {
    Q_OBJECT
public:
    AppItemWidget(const ProgramPtr& program, QWidget* parent);

    const ProgramPtr& program() const { return m_program; }
    const ProgramRef& ref() const { return m_program->ref; }
    bool isRunning() const;
    virtual void refreshRunState();

Q_SIGNALS:
    void appStarsUpdate(const QString& appName, int score);

public Q_SLOTS:
    void onStartButtonClicked(bool inTerminal);
    void onStopButtonClicked();

protected:
    RunStateButton* runButton() const { return m_runButton; }

    ProgramPtr m_program;

private:
    RunStateButton* m_runButton;
    QElapsedTimer m_sinceClick;
};
