#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <memory>

/// Turns SIGQUIT, SIGINT, SIGTERM and SIGHUP into an orderly end of the event loop. The handler itself only
/// writes a byte to a pipe, which is all that is legal there; the loop then calls QCoreApplication::quit(),
/// also when the signal came before the loop began. One instance a process.
class UnixSignals : public QObject {
    Q_OBJECT
public:
    explicit UnixSignals(QObject* parent = nullptr);
    ~UnixSignals() override;

    /// A signal that came while a dialog ran before the event loop has ended the dialog only.
    bool endRequested() const { return m_endRequested; }

private:
    void onReadable();

    int m_readEnd = -1;
    bool m_endRequested = false;
    std::unique_ptr<QSocketNotifier> m_notifier;
};
