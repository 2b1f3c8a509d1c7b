#include "bottleservice/jobs/ChangeRunnerJob.h"

#include "bottleservice/BottleEngine.h"
#include "bottleservice/components/Background.h"
#include "bottleservice/wine/SlimPrefix.h"

ChangeRunnerJob::ChangeRunnerJob(BottleEngine* engine, const QString& bottle, const Runner& runner,
                                 Reply reply)
    : InstallJob(engine, bottle, std::move(reply)), m_runner(runner) {}

InstallJob::Need ChangeRunnerJob::prepare(const BottleYaml& settings, const Runner& runner, QString*) {
    m_oldKey = settings.templateKey();
    m_newKey = Templates::keyOf(m_runner);
    return settings.runner() == m_runner.name && runner.wine == m_runner.wine ? Need::Nothing : Need::Work;
}

void ChangeRunnerJob::work() {
    // A prefix that was made in another way has no links to exchange; its new Wine updates it by itself.
    if (m_oldKey.isEmpty() || m_oldKey == m_newKey) {
        worked({});
        return;
    }
    m_isWaiting = true;
    Templates* templates = engine()->templates();
    templates->obtain(m_runner, this, [this, templates](const QString& path, const QString& sentence) {
        if (!std::exchange(m_isWaiting, false))
            return;
        if (path.isEmpty()) {
            worked(sentence);
            return;
        }
        Background::run(
            this,
            [prefix = bottlePath(), old = templates->pathOf(m_oldKey), path, stop = cancelled()] {
                return SlimPrefix::renew(prefix, old, path, *stop);
            },
            [this](const QString& fault) { worked(fault); });
    });
}

void ChangeRunnerJob::abort() {
    if (std::exchange(m_isWaiting, false))
        worked("The change was cancelled.");
}

void ChangeRunnerJob::enter(BottleYaml* settings) {
    settings->set("Runner", m_runner.name);
    if (!m_oldKey.isEmpty())
        settings->set("Template", m_newKey);
}
