#pragma once

#include <QObject>
#include <QSet>

class QWidget;

/// Keeps the set of windows that have been shown and still exist: those that can keep the process alive.
/// Child of the application object and its event filter, so that it sees the toolkit's dialogs too; it never
/// consumes an event. GUI thread.
class WindowMonitor : public QObject {
    Q_OBJECT
public:
    explicit WindowMonitor(QObject* parent);

    bool contains(QWidget* widget) const { return m_windows.contains(widget); }
    bool eventFilter(QObject* object, QEvent* event) override;

    /// Logs name, class, title and id of the window.
    static void logWindow(const QWidget* widget);

Q_SIGNALS:
    /// A window or dialog is shown, for the first time or again. Not sent for menus and tool tips.
    void shown();

private:
    QSet<QWidget*> m_windows;
};
