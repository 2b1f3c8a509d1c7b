#pragma once

#include <QThread>

/// Waits until a Wine window of one bottle exists on the desktop, including those at start, and ends. Ends at
/// once without a display. Polls every 10 ms.
class X11FindWindowThread : public QThread {
    Q_OBJECT
public:
    /// `prefixPath` is the bottle's directory, possibly through links; the caller keeps the string while the
    /// thread runs.
    X11FindWindowThread(const char* prefixPath, QObject* parent);
    /// Stops the thread and waits without a time-out.
    ~X11FindWindowThread() override;

    /// Requests the thread to stop; does not wait.
    void stop() { requestInterruption(); }

Q_SIGNALS:
    void windowFound();

protected:
    void run() override;

private:
    bool stopRequested() const { return isInterruptionRequested(); }

    const char* m_prefixPath;
};
