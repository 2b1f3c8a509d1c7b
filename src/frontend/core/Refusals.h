#pragma once

#include <QPointer>
#include <QWidget>

struct OpenRefusal;

/// Decides which starts are refused and shows the reason: over the main window for a file that was chosen
/// there, otherwise in a window of its own. Owned by the application object; GUI thread.
class Refusals {
public:
    /// The window over which reasons are shown; null for none.
    void setWindow(QWidget* window) { m_window = window; }

    /// These three return true after they have shown why the start is refused, false when it may go on.
    bool refusesFile(const QString& path);
    bool refusesWithoutBus();
    bool refusesStoredProgram();
    /// Tells why a word of the command line is not opened: by a notification, or in a window for a file that
    /// was chosen in one.
    void refuseOther(const QString& path);

    /// Whether a reason was shown in a window.
    bool hasRefused() const { return m_hasRefused; }

private:
    bool show(const QString& path, const OpenRefusal& refusal);

    QPointer<QWidget> m_window;
    bool m_hasRefused = false;
};
