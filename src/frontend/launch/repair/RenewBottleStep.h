#pragma once

#include "launch/repair/RepairStep.h"

struct BusResult;

/// Restores the files of Wine that a bottle has lost.
class RenewBottleStep : public RepairStep {
    Q_OBJECT
public:
    RenewBottleStep(const QString& bottle, QObject* parent);

    void start() override;
    void retry() override;
    void cancel() override;

private:
    void onAnswer(const BusResult& answer);

    QString m_bottle;
    bool m_isRunning = false;
};
