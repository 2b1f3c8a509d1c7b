#pragma once

#include <QDateTime>
#include <QPointer>

#include "launch/LaunchWindows.h"

struct LaunchedProgram;

/// The configuration window that a launch has opened on its bottle. Owned by the ExeFileRunner, which it ends
/// with. When the window is closed, the shortcuts that were made meanwhile become programs of the bottle. GUI
/// thread.
class ConfigWindowSession : public QObject {
    Q_OBJECT
public:
    /// Shortcuts made after `since` count. Returns null when there is no window; the user has then been told
    /// why.
    static ConfigWindowSession* open(const ProgramRef& program, LaunchWindows::ConfigMode mode,
                                     const QDateTime& since, QWidget* over, QObject* parent);

    /// Makes the file a program of the bottle and lets the window select it. A bottle that does not exist is
    /// made first, while the window shows that it loads and an event loop runs; a failure of that is the
    /// window's to show. False when the window was closed meanwhile; this object may be gone by then.
    bool showFile(LaunchedProgram& program);
    /// Lets the window select the program that is made of the file, once the bottle has it.
    void selectProgram(const QString& exePath);
    /// The bottle was asked for, and the window has been closed before it was there.
    bool isBottleUnfinished() const { return m_isBottleUnfinished; }

Q_SIGNALS:
    /// The window was closed and the shortcuts have been collected.
    void closed();

private:
    ConfigWindowSession(BottleConfigWindow* window, const QString& bottle, const QDateTime& since,
                        QObject* parent);
    void onClosed();
    bool prepareBottle();
    void createBottle();

    QPointer<BottleConfigWindow> m_window;
    QString m_bottle;
    QDateTime m_since;
    bool m_isBottleUnfinished = false;
};
