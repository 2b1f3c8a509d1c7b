#pragma once

#include <QPointer>

#include "fenk/Dialog.h"

class LogsWidget;

/// Shows the log of a launch over its banner. The log stays its owner's: the dialog takes it in while it
/// lives and gives it back, hidden and without a parent, when it goes.
class RunningLogsDialog : public Fenk::Dialog {
    Q_OBJECT
public:
    RunningLogsDialog(LogsWidget* logs, QWidget* banner);
    ~RunningLogsDialog() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    QPointer<LogsWidget> m_logs;
};
