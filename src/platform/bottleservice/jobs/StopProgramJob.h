#pragma once

#include <QElapsedTimer>
#include <QJsonObject>
#include <QTimer>

#include "bottleservice/bottles/BottleStore.h"
#include "bottleservice/jobs/Job.h"
#include "bottleservice/wine/Processes.h"

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
    QJsonObject m_programs;  ///< of the bottle
    Processes m_processes;
    QTimer m_poll;
    QElapsedTimer m_elapsed;
    bool m_asked = false;
    int m_emptyLooks = 0;
};
