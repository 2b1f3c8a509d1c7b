#pragma once

#include <QThread>

/// Reports the windows of programs that were started by their id, whenever something on the desktop changes.
/// Without a display it ends at once; can be started again. After an X error it ends, and so does from then
/// on every thread of this class.
class X11WaitWineProgramThread : public QThread {
    Q_OBJECT
public:
    explicit X11WaitWineProgramThread(QObject* parent);
    /// Stops and waits, without a limit.
    ~X11WaitWineProgramThread() override;

    /// Asks the running thread to end, and does not wait.
    void stop() { requestInterruption(); }

Q_SIGNALS:
    /// A window of the program is there. Comes again for each of its windows with each change of the desktop.
    void winpopuped(const QString& uuid);

protected:
    void run() override;

private:
    bool stopRequested() const { return isInterruptionRequested(); }
};
