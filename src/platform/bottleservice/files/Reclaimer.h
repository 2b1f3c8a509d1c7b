#pragma once

#include <QObject>
#include <QString>
#include <QThreadPool>
#include <atomic>

/// Removes directory trees in the background, one after the other. What cannot be removed is logged and tried
/// again at the next start of the service, and so is what is not done some seconds after its end was asked
/// for.
class Reclaimer : public QObject {
    Q_OBJECT

public:
    explicit Reclaimer(QObject* parent = nullptr);
    ~Reclaimer() override;

    void remove(const QString& path);
    /// The same for a directory that must lose its name at once: it is renamed with the prefix first.
    void remove(const QString& path, const char* prefix);

    bool isIdle() const { return m_worker.activeThreadCount() == 0; }

private:
    std::atomic_bool m_stop{false};
    QThreadPool m_worker;
};
