#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <memory>

/// Turns SIGTERM, SIGINT and SIGHUP into a Qt signal: the handler only writes a byte. One per process.
class ShutdownSignals : public QObject {
    Q_OBJECT

public:
    explicit ShutdownSignals(QObject* parent = nullptr);
    ~ShutdownSignals() override;

Q_SIGNALS:
    void received();

private:
    int m_pipe[2] = {-1, -1};
    std::unique_ptr<QSocketNotifier> m_notifier;
};
