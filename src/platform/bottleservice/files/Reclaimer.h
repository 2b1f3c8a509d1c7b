#pragma once

#include <QObject>
#include <QString>
#include <QThreadPool>
#include <atomic>

/// Removes directory trees in a thread of its own, one after the other. A tree that cannot be removed is
/// logged and left for the next start of the service. The destructor waits some seconds for the trees that
/// are left. Owned by BottleEngine; lives in the main thread.
class Reclaimer : public QObject {
    Q_OBJECT

public:
    explicit Reclaimer(QObject* parent = nullptr);
    ~Reclaimer() override;

    void remove(const QString& path);
    /// The same for a directory whose name must be free at once: renames it first, to a hidden name with the
    /// prefix.
    void remove(const QString& path, const char* prefix);

    bool isIdle() const { return m_worker.activeThreadCount() == 0; }

private:
    std::atomic_bool m_stop{false};
    QThreadPool m_worker;
};
