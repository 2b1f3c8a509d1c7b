#pragma once

#include <QObject>
#include <QString>
#include <QThreadPool>
#include <functional>

/// Removes directory trees in the background, one after the other. What cannot be removed is logged and tried
/// again at the next start of the service. Waits in its destructor for what has begun.
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
    QThreadPool m_worker;
};
