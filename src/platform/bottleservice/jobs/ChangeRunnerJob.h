#pragma once

#include "bottleservice/jobs/InstallJob.h"

/// Lets a bottle run on another Wine: the copies and links of the old one's files become the new one's, and
/// the registry gets what the new one brings.
class ChangeRunnerJob : public InstallJob {
    Q_OBJECT

public:
    ChangeRunnerJob(BottleEngine* engine, const QString& bottle, const Runner& runner, Reply reply);

protected:
    Need prepare(const BottleYaml& settings, const Runner& runner, Reason* refusal) override;
    void work() override;
    /// The template goes on being made, for the next who wants it.
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
