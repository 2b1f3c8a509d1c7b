#pragma once

#include "bottleservice/jobs/InstallJob.h"

/// Lets a bottle run on another Wine: replaces the copies and links of the old Wine's files by the new one's
/// and merges the new one's registry into the bottle's.
class ChangeRunnerJob : public InstallJob {
    Q_OBJECT

public:
    ChangeRunnerJob(const JobBottle& bottle, const Runner& runner, Reply reply);

protected:
    Need prepare(const BottleYaml& settings, const Runner& runner, Reason* refusal) override;
    void work() override;
    /// A template that is being made is finished all the same, for the next bottle.
    void abort() override;
    void enter(BottleYaml* settings) override;

private:
    void boot();

    Runner m_runner;
    QString m_oldKey;
    QString m_newKey;
    bool m_isWaiting = false;  ///< for the template
    QPointer<WineCommand> m_boot;
};
