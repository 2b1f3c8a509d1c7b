#pragma once

#include "bottleservice/bottles/BottleStore.h"
#include "bottleservice/jobs/Job.h"
#include "bottleservice/wine/Runners.h"

/// Ends everything that runs in a bottle, launch scripts too.
class StopBottleJob : public Job {
    Q_OBJECT

public:
    StopBottleJob(const BottleStore& store, const QString& name, const Runners& runners, Reply reply);
    void start() override;

private:
    BottleStore m_store;
    QString m_name;
    Runners m_runners;
};
