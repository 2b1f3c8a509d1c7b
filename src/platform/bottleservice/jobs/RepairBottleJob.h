#pragma once

#include "bottleservice/jobs/InstallJob.h"
#include "bottleservice/wine/PrefixDamage.h"

/// Restores the files of Wine that a bottle has lost (PrefixDamage) from the template of its Wine, which is
/// made if it is missing. The bottle must be up to date with its Wine (RenewBottleJob), since missing updates
/// would count as damage.
class RepairBottleJob : public InstallJob {
    Q_OBJECT

public:
    /// `renewed` gets the number of restored files before the answer.
    RepairBottleJob(const JobBottle& bottle, std::shared_ptr<int> renewed, Reply reply);

protected:
    Need prepare(const BottleYaml& settings, const Runner& runner, Reason* refusal) override;
    void work() override;
    /// A template that is being made is finished all the same, for the next bottle.
    void abort() override;
    void enter(BottleYaml*) override {}

private:
    void makeWindowsDirectory();

    std::shared_ptr<int> m_renewed;
    Runner m_runner;
    PrefixDamage::Links m_links = PrefixDamage::Links::AsInTemplate;
    bool m_isWaiting = false;  ///< for the template
};
