#pragma once

#include <QByteArray>
#include <QHash>
#include <QMap>

#include "launch/watch/X11Desktop.h"

/// What ties the windows of a desktop to bottles and programs: the process that a window names, and what that
/// has in its environment. Remembers of each process whether it is Wine's, as long as it runs the same
/// executable: to read what is mapped there is what costs most of a look at the desktop.
class WineWindows {
public:
    explicit WineWindows(X11Desktop& desktop) : m_desktop(desktop) {}

    /// WineNames::winePrefixPrefix() and programUuidPrefix(), as far as they are there, to their values.
    /// Empty for a window that is not Wine's, that is less than 121 pixels wide or high, or whose process
    /// can't be looked at.
    QMap<QByteArray, QByteArray> wineEnvironmentOfWindow(X11Desktop::Window window);

    /// Whether Wine's loader is mapped there.
    static bool isWineProcess(qint64 pid);
    static QMap<QByteArray, QByteArray> wineEnvironment(qint64 pid);

private:
    struct Verdict {
        QByteArray executable;
        bool isWine;
    };
    bool isKnownWineProcess(qint64 pid);

    X11Desktop& m_desktop;
    QHash<qint64, Verdict> m_known;
};
