#include "widgets/RunningLogsDialog.h"

#include <QAbstractButton>
#include <QClipboard>
#include <QGuiApplication>
#include <QLayout>
#include <QScreen>
#include <QShortcut>
#include <QShowEvent>

#include "fenk/controls/FloatingMessage.h"
#include "fenk/style/Theme.h"
#include "widgets/LogsWidget.h"

namespace {

constexpr QSize SmallestSize(478, 331);
constexpr QSize LargestSize(1040, 620);
constexpr qreal ShareOfScreen = 0.9;
constexpr int AboveMiddle = 30;

}  // namespace

RunningLogsDialog::RunningLogsDialog(LogsWidget* logs, QWidget* banner) : Dialog(banner), m_logs(logs) {
    setAccessibleName("running_logs_dialog");
    setTitle(tr("Running Logs"));
    addContent(logs);
    logs->show();
    setOnButtonClickedClose(false);
    button(addButton(tr("Copy Report")))
        ->setToolTip(tr("The log, what was tried and what this computer runs, without your name"));
    button(addButton(tr("Save...")))->setToolTip(tr("Save the log"));
    connect(this, &Dialog::buttonClicked, this, [this](int index) {
        if (index == 0)
            Q_EMIT reportWanted();
        else if (m_logs)
            m_logs->askWhereToSave();
    });
    // Also while a button has the focus.
    connect(new QShortcut(QKeySequence::Save, this), &QShortcut::activated, logs,
            &LogsWidget::askWhereToSave);
    connect(new QShortcut(QKeySequence::Copy, this), &QShortcut::activated, logs, &LogsWidget::copyText);
    setMinimumSize(SmallestSize);
    resizeToLines();
}

RunningLogsDialog::~RunningLogsDialog() {
    if (!m_logs)
        return;
    m_logs->hide();
    m_logs->setParent(nullptr);
}

/// Lines are not wrapped where the screen is wide enough.
void RunningLogsDialog::resizeToLines() {
    resize(SmallestSize);
    layout()->activate();
    const QSize unbroken = SmallestSize + (m_logs->unbrokenSize() - m_logs->size());
    const QScreen* screen = parentWidget() ? parentWidget()->screen() : QGuiApplication::primaryScreen();
    const QSize limit = screen->availableSize() * ShareOfScreen;
    resize(unbroken.boundedTo(LargestSize).boundedTo(limit).expandedTo(SmallestSize));
}

void RunningLogsDialog::copyReport(const QString& text) {
    QGuiApplication::clipboard()->setText(text);
    Fenk::FloatingMessage::show(this, Fenk::Theme::icon("fenk-success"), tr("The report was copied"));
}

void RunningLogsDialog::showEvent(QShowEvent* event) {
    Dialog::showEvent(event);
    if (event->spontaneous())
        return;
    if (m_logs)
        m_logs->setFocus(Qt::OtherFocusReason);
    moveToCenter();
    move(x(), y() - AboveMiddle);
}
