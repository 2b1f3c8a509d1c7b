#pragma once

#include <QPointer>

#include "fenk/window/Dialog.h"

class LogsWidget;

/// Shows the log of a launch over its banner. Opens as large as the lines need, from 478 x 331 up to
/// 1040 x 620 or 90 % of the screen, and can be resized. The log remains its owner's: it is a child of the
/// dialog while that lives; afterwards it is hidden and has no parent.
class RunningLogsDialog : public Fenk::Dialog {
    Q_OBJECT
public:
    RunningLogsDialog(LogsWidget* logs, QWidget* banner);
    ~RunningLogsDialog() override;

    /// Puts the text on the clipboard and says so.
    void copyReport(const QString& text);

Q_SIGNALS:
    /// The user asks for a report of the launch. The receiver makes it and calls copyReport().
    void reportWanted();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void resizeToLines();

    QPointer<LogsWidget> m_logs;
};
