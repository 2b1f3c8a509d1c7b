#pragma once

#include <QElapsedTimer>
#include <QTimer>

#include "bottleservice/jobs/Job.h"
#include "bottleservice/wine/Processes.h"

/// Ends everything in a bottle.
class StopBottleJob : public Job {
    Q_OBJECT

public:
    StopBottleJob(const QString& bottlePath, const QString& wineserver, Reply reply);
    void start() override;

private:
    QString m_bottlePath;
    QString m_wineserver;
};

/// Ends the processes of one program: asks first, and kills after a second what did not go.
class StopProgramJob : public Job {
    Q_OBJECT

public:
    StopProgramJob(const QString& bottlePath, const QString& programId, Reply reply);
    void start() override;

private:
    void step();

    QString m_bottlePath;
    QString m_programId;
    Processes m_processes;
    QTimer m_poll;
    QElapsedTimer m_elapsed;
    bool m_asked = false;
};
