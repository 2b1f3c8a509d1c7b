#pragma once

#include "bottleservice/bottles/BottleYaml.h"
#include "bottleservice/jobs/Job.h"
#include "bottleservice/settings/RegistryChange.h"

class BottleEngine;
class RegistryWriter;

/// Changes settings of a bottle in bottle.yml and, where told, in its registry. The note of the registry's
/// change stands in bottle.yml until it is done, so that a service that was killed between leaves a bottle
/// that the next change or the next service brings to the new state. When Wine refuses, bottle.yml is again
/// what it was; a
/// change that is cut off by the end of the service stays pending.
class ChangeSettingsJob : public Job {
    Q_OBJECT

public:
    using Change = std::function<void(BottleYaml&)>;

    ChangeSettingsJob(BottleEngine* engine, const QString& bottle, Change change,
                      const RegistryChange& registry, Reply reply);

    void start() override;
    void cancel() override;

private:
    void onWritten(const QString& sentence);

    BottleEngine* m_engine;
    QString m_bottle;
    Change m_change;
    RegistryChange m_registry;
    QByteArray m_before;
    RegistryWriter* m_writer = nullptr;
    bool m_cancelled = false;
};
