#pragma once

#include <QThread>

/// Waits until a Wine window of one bottle is on the desktop, from the first look on, and ends. Without a
/// display it ends at once. Looks every 10 ms.
class X11FindWindowThread : public QThread {
    Q_OBJECT
public:
    /// prefixPath is the bottle's directory, by whichever way; its owner keeps it as long as the thread runs.
    X11FindWindowThread(const char* prefixPath, QObject* parent);
    /// Stops and waits, without a limit.
    ~X11FindWindowThread() override;

    /// Asks the running thread to end, and does not wait.
    void stop() { requestInterruption(); }

Q_SIGNALS:
    void windowFound();

protected:
    void run() override;

private:
    bool stopRequested() const { return isInterruptionRequested(); }

    const char* m_prefixPath;
};
