#pragma once

#include "bottleservice/jobs/InstallJob.h"
#include "bottleservice/wine/PrefixDamage.h"

/// Brings back what a bottle has lost of Wine's own files (PrefixDamage), from the template of its Wine,
/// which is made if it is missing. Works on a bottle that follows its Wine's updates already.
class RepairBottleJob : public InstallJob {
    Q_OBJECT

public:
    /// `mended` gets the number of files before the answer.
    RepairBottleJob(BottleEngine* engine, const QString& bottle, std::shared_ptr<int> mended, Reply reply);

protected:
    Need prepare(const BottleYaml& settings, const Runner& runner, Reason* refusal) override;
    void work() override;
    /// The template goes on being made, for the next who wants it.
    void abort() override;
    void enter(BottleYaml*) override {}

private:
    void makeWindowsDirectory();

    std::shared_ptr<int> m_mended;
    Runner m_runner;
    PrefixDamage::Links m_links = PrefixDamage::Links::AsInTemplate;
    bool m_isWaiting = false;  ///< for the template
};
