#pragma once

#include "bottleservice/bottles/BottleStore.h"
#include "bottleservice/jobs/Job.h"
#include "bottleservice/wine/Runners.h"

class Reclaimer;

/// Ends everything that runs in a bottle, renames the bottle to a hidden name, answers, and removes the files
/// in the background. Refuses anything but a bottle.
class DeleteBottleJob : public Job {
    Q_OBJECT

public:
    DeleteBottleJob(const BottleStore& store, const QString& name, const Runners& runners,
                    Reclaimer* reclaimer, Reply reply);

    void start() override;

private:
    void stopPrograms();
    void onStopped(bool clean);

    BottleStore m_store;
    QString m_name;
    Runners m_runners;
    Reclaimer* m_reclaimer;
    QStringList m_icons;  ///< of its package, on the desktop
};
