#pragma once

#include "bottleservice/jobs/Job.h"

class BottleEngine;

/// Brings a bottle that was copied from an older template up to the Wine that it runs on now. Does nothing
/// where that is so already, and for bottles that were not made from a template.
class RenewBottleJob : public Job {
    Q_OBJECT

public:
    RenewBottleJob(BottleEngine* engine, const QString& bottle);
    void start() override;

private:
    void onRenewed(const QString& key, const QString& sentence);

    BottleEngine* m_engine;
    QString m_bottle;
};
