#pragma once

#include <QPointer>

#include "fenk/window/Dialog.h"

class LogsWidget;

/// Shows the log of a launch over its banner. Opens as large as the lines need, from 478 x 331 up to what the
/// screen has room for, and can be resized. The log stays its owner's: the dialog takes it in while it lives
/// and gives it back, hidden and without a parent, when it goes.
class RunningLogsDialog : public Fenk::Dialog {
    Q_OBJECT
public:
    RunningLogsDialog(LogsWidget* logs, QWidget* banner);
    ~RunningLogsDialog() override;

    /// Puts the text on the clipboard and says so.
    void copyReport(const QString& text);

Q_SIGNALS:
    /// The user wants a report of the launch; whoever can make one calls copyReport().
    void reportWanted();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void takeRoom();

    QPointer<LogsWidget> m_logs;
};
