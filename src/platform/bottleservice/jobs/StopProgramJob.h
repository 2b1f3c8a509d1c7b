#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <memory>

#include "bottleservice/bottles/BottleStore.h"
#include "bottleservice/jobs/Job.h"
#include "bottleservice/wine/Processes.h"
#include "bottleservice/wine/RunOwners.h"

/// Ends the processes of one program, however it was started: SIGTERM first, after a second SIGKILL. Fails
/// when some are left after two seconds.
class StopProgramJob : public Job {
    Q_OBJECT

public:
    StopProgramJob(const BottleStore& store, const QString& name, const QString& programId, Reply reply);
    void start() override;

private:
    void step();

    BottleStore m_store;
    QString m_name;
    QString m_programId;
    std::unique_ptr<RunOwners> m_owners;
    Processes m_processes;
    QTimer m_poll;
    QElapsedTimer m_elapsed;
    bool m_asked = false;
    int m_emptyChecks = 0;
};
