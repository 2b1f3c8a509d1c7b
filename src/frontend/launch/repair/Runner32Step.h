#pragma once

#include "launch/repair/RepairStep.h"

struct BusResult;

/// Switches a bottle to a runner that runs 32-bit programs, and downloads that runner first if it is not
/// installed.
class Runner32Step : public RepairStep {
    Q_OBJECT
public:
    Runner32Step(const QString& bottle, const QString& runner, bool isInstalled, QObject* parent);

    void start() override;
    void retry() override;
    void cancel() override;

private:
    enum class State { Idle, Fetching, Switching, Asking };

    void fetch();
    void onFetched(bool success, const QString& error);
    void onProgress(const QString& kind, const QString& name, uint received, uint total);
    void requestSwitch();
    void onSwitched(const QString& bottle, const QString& kind, const QString& name, const QString& result);
    void onServiceLost();
    void end(const QString& error);

    QString m_bottle;
    QString m_runner;
    bool m_isInstalled;
    State m_state = State::Idle;
    bool m_callTimedOut = false;  ///< the D-Bus call timed out; the signal reports the result
};
