#pragma once

#include <QObject>
#include <QSet>

class QWidget;

/// Knows every window that has been shown and still exists: the windows that can keep the process alive.
/// Installed as event filter on the application object, so that it sees dialogs of the toolkit too; it never
/// consumes an event. Main thread only.
class WindowMonitor : public QObject {
    Q_OBJECT
public:
    explicit WindowMonitor(QObject* parent);

    bool contains(QWidget* widget) const { return m_windows.contains(widget); }
    bool eventFilter(QObject* object, QEvent* event) override;

    /// The words by which a window is named in the log.
    static void logWindow(const QWidget* widget);

Q_SIGNALS:
    /// A window or dialog (no menu, no tool tip) comes up, for the first time or again.
    void shown();

private:
    QSet<QWidget*> m_windows;
};
