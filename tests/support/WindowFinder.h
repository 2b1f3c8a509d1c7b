#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QVector>

namespace TestSupport {

/// One top-level window as the window manager lists it. pid is 0 when it is not known.
struct WindowInfo {
    quint32 id = 0;
    QString title;
    qint64 pid = 0;
};

/// Looks at the windows of $DISPLAY the way a desktop does: through the window manager's list, whatever
/// process they belong to. Needs a window manager that keeps _NET_CLIENT_LIST_STACKING.
class WindowFinder {
public:
    /// Bottom first. Empty when the display can't be reached.
    QVector<WindowInfo> windows() const;
    /// The topmost window whose title contains the text; id 0 when there is none.
    WindowInfo byTitle(const QString& text) const;
    QVector<WindowInfo> byPid(qint64 pid) const;
    /// The same, waiting for the window to come.
    WindowInfo waitForTitle(const QString& text, int timeoutMs = 20000) const;
    bool waitUntilGone(quint32 id, int timeoutMs = 10000) const;
    /// Asks as a click on the close button does. False when the display can't be reached.
    bool close(quint32 id) const;
    /// Closes all windows, also those that only come meanwhile.
    bool closeAll(int timeoutMs) const;
    /// Whether a window manager runs on the display.
    bool hasWindowManager() const;
};

/// The environment of a process of this user; empty when it is gone.
QMap<QString, QString> environmentOf(qint64 pid);

}  // namespace TestSupport
