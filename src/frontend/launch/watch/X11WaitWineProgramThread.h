#pragma once

#include <QThread>

/// Reports windows of stored programs whenever the desktop changes. Ends at once without a display; can be
/// restarted. After an X error this and every later thread of this class ends.
class X11WaitWineProgramThread : public QThread {
    Q_OBJECT
public:
    explicit X11WaitWineProgramThread(QObject* parent);
    /// Stops the thread and waits without a time-out.
    ~X11WaitWineProgramThread() override;

    /// Requests the thread to stop; does not wait.
    void stop() { requestInterruption(); }

Q_SIGNALS:
    /// The program has a window. Emitted for each of its windows on each change of the desktop.
    void winpopuped(const QString& uuid);

protected:
    void run() override;

private:
    bool stopRequested() const { return isInterruptionRequested(); }
};
