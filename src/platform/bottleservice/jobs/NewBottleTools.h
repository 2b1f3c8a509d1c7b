#pragma once

#include <functional>
#include <memory>

#include "bottleservice/backup/BackupFile.h"
#include "bottleservice/bottles/BottleStore.h"
#include "bottleservice/wine/Runners.h"

class QThreadPool;
class Reclaimer;
class Templates;

/// What a job needs that makes a bottle of something that is copied into it.
struct NewBottleTools {
    BottleStore store;
    Runners runners;
    Templates* templates;
    Reclaimer* reclaimer;
    QThreadPool* worker;  ///< outlives the job
    std::shared_ptr<BackupFile::Progress> progress;
    std::function<bool(const QString& bottle)> hasJobs;  ///< whether such a bottle may be about to be made
};
