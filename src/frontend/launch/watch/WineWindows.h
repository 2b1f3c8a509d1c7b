#pragma once

#include <QByteArray>
#include <QHash>
#include <QMap>

#include "launch/watch/X11Desktop.h"

/// Maps the windows of a desktop to bottles and programs, by the environment of their processes. Caches
/// whether a process is Wine's for as long as it runs the same executable, since reading its memory map is
/// the expensive part.
class WineWindows {
public:
    explicit WineWindows(X11Desktop& desktop) : m_desktop(desktop) {}

    /// The values of WineNames::winePrefixPrefix() and programUuidPrefix(), if set. Empty if the window is
    /// not Wine's, is less than 121 pixels wide or high, or if the process can't be read.
    QMap<QByteArray, QByteArray> wineEnvironmentOfWindow(X11Desktop::Window window);

    /// Whether the process has mapped Wine's loader.
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
