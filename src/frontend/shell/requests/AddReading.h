#pragma once

#include <QObject>
#include <QTimer>
#include <atomic>
#include <memory>

#include "backend/OwnThread.h"
#include "shell/requests/AddRequest.h"

/// Looks in the background at what the user dropped or pasted, on a thread that holds up nothing else: a file
/// may lie on a server that does not answer. One at a time; a new one replaces one that runs. GUI thread.
class AddReading : public QObject {
    Q_OBJECT
public:
    explicit AddReading(QObject* parent);
    ~AddReading() override;

    /// Inputs of AddInputs.
    void start(const QStringList& inputs);
    /// done() does not come.
    void cancel();
    bool isRunning() const { return m_thread != nullptr; }

Q_SIGNALS:
    /// It takes longer than a moment, so that the user should see it.
    void slow();
    void done(const AddRequest& request);

private:
    std::unique_ptr<OwnThread> m_thread;  ///< while it runs
    std::shared_ptr<std::atomic_bool> m_isCancelled;
    QTimer m_moment;
};
