#pragma once

#include <QByteArray>
#include <QObject>

class QSocketNotifier;

/// Reads what the script of packaged programs writes to a pipe: lines "::progress:: N", percent. Other lines
/// are ignored. Does not own the descriptor, and does not block. GUI thread.
class BottleProgress : public QObject {
    Q_OBJECT
public:
    explicit BottleProgress(int fd, QObject* parent = nullptr);

Q_SIGNALS:
    void progress(double percent);
    void ended();  ///< the script is done or has been killed

private:
    void read();

    int m_fd;
    QSocketNotifier* m_notifier;
    QByteArray m_rest;
};
