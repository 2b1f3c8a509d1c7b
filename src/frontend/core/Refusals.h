#pragma once

#include <QPointer>
#include <QWidget>

struct OpenRefusal;

/// Decides which starts are refused and says on the screen why: over the main window what was chosen there,
/// otherwise in a window of its own. Owned by the application object; GUI thread.
class Refusals {
public:
    /// Over which refusals are shown until it is called with null.
    void setWindow(QWidget* window) { m_window = window; }

    /// The next three are false when nothing stands in the way, and true when that has been said.
    bool refusesFile(const QString& path);
    bool refusesWithoutBus();
    bool refusesStoredProgram();
    /// A word of the command line that is opened in no case; only a notification, unless it was chosen in a
    /// window.
    void refuseOther(const QString& path);

    /// In a window.
    bool hasRefused() const { return m_hasRefused; }

private:
    bool show(const QString& path, const OpenRefusal& refusal);

    QPointer<QWidget> m_window;
    bool m_hasRefused = false;
};
