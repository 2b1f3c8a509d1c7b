#pragma once

#include "bottleservice/bottles/BottleYaml.h"
#include "bottleservice/jobs/Job.h"
#include "bottleservice/jobs/JobBottle.h"
#include "bottleservice/settings/RegistryChange.h"

class RegistryWriter;

/// Changes settings of a bottle in bottle.yml and, where asked for, in its registry. The registry's change
/// stands in bottle.yml ("Pending_Registry") until it is done, so that the next change or the next service
/// finishes what a killed service has left. When Wine refuses, bottle.yml gets its old content again; a
/// change that the end of the service interrupts stays pending.
class ChangeSettingsJob : public Job {
    Q_OBJECT

public:
    using Change = std::function<void(BottleYaml&)>;

    ChangeSettingsJob(const JobBottle& bottle, Change change, const RegistryChange& registry, Reply reply);

    void start() override;
    void cancel() override;

private:
    void onWritten(const Reason& reason);

    JobBottle m_bottle;
    Change m_change;
    RegistryChange m_registry;
    QByteArray m_before;
    RegistryWriter* m_writer = nullptr;
    bool m_cancelled = false;
};
