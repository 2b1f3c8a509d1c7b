#include "launch/banner/RunningLogsDialog.h"

#include <QShowEvent>

#include "launch/banner/LogsWidget.h"

namespace {

constexpr QSize DialogSize(478, 331);
constexpr int AboveMiddle = 30;

}  // namespace

RunningLogsDialog::RunningLogsDialog(LogsWidget* logs, QWidget* banner) : Dialog(banner), m_logs(logs) {
    setAccessibleName("running_logs_dialog");
    setTitle(tr("Running Logs"));
    addContent(logs);
    logs->show();
    setFixedSize(DialogSize);
}

RunningLogsDialog::~RunningLogsDialog() {
    if (!m_logs)
        return;
    m_logs->hide();
    m_logs->setParent(nullptr);
}

void RunningLogsDialog::showEvent(QShowEvent* event) {
    if (m_logs)
        m_logs->setFocus(Qt::OtherFocusReason);
    Dialog::showEvent(event);
    if (event->spontaneous())
        return;
    moveToCenter();
    move(x(), y() - AboveMiddle);
}
