#pragma once

#include <QPointer>
#include <QWidget>

struct OpenRefusal;

/// Refuses starts that cannot succeed and shows the reason: over the main window for a file that was chosen
/// there, otherwise in a window of its own. Owned by the application object; GUI thread.
class Refusals {
public:
    /// The window over which reasons are shown; null: in a window of their own.
    void setWindow(QWidget* window) { m_window = window; }

    /// These three return true when the start is refused and the reason has been shown.
    bool refusesFile(const QString& path);
    bool refusesWithoutBus();
    bool refusesStoredProgram();
    /// Tells why something is not opened that is no Windows program: by a notification, or over the window in
    /// which the file was chosen.
    void refuseOther(const QString& path);

    /// Whether a reason was shown in a window.
    bool hasRefused() const { return m_hasRefused; }

private:
    bool show(const QString& path, const OpenRefusal& refusal);

    QPointer<QWidget> m_window;
    bool m_hasRefused = false;
};
