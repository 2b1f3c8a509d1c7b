#include "bottleservice/jobs/ChangeRunnerJob.h"

#include "bottleservice/bottles/RegistryMerge.h"
#include "bottleservice/files/Background.h"
#include "bottleservice/wine/SlimPrefix.h"
#include "bottleservice/wine/Templates.h"
#include "bottleservice/wine/WineCommand.h"
#include "bottleservice/wine/WineEnvironment.h"

namespace {

constexpr int BootTimeoutMs = 300000;

}  // namespace

ChangeRunnerJob::ChangeRunnerJob(const JobBottle& bottle, const Runner& runner, Reply reply)
    : InstallJob(bottle, std::move(reply)), m_runner(runner) {}

InstallJob::Need ChangeRunnerJob::prepare(const BottleYaml& settings, const Runner& runner, Reason*) {
    m_oldKey = settings.templateKey();
    m_newKey = Templates::keyOf(m_runner);
    return settings.runner() == m_runner.name && runner.wine == m_runner.wine ? Need::Nothing : Need::Work;
}

void ChangeRunnerJob::work() {
    if (m_oldKey.isEmpty()) {
        boot();
        return;
    }
    if (m_oldKey == m_newKey) {
        worked({});
        return;
    }
    m_isWaiting = true;
    Templates* templates = bottle().templates();
    templates->obtain(m_runner, this, [this, templates](const QString& path, const Reason& reason) {
        if (!std::exchange(m_isWaiting, false))
            return;
        if (path.isEmpty()) {
            worked(reason);
            return;
        }
        Background::run(
            this,
            [prefix = bottle().path(), old = templates->pathOf(m_oldKey), path, stop = cancelled()] {
                const QString fault = SlimPrefix::renew(prefix, old, path, *stop);
                return fault.isEmpty() ? RegistryMerge::update(prefix, old, path) : fault;
            },
            [this](const QString& fault) { worked(fault); });
    });
}

/// For a prefix that is no copy of a template: it has its own copies of Wine's files, which the new Wine
/// updates together with the registry.
void ChangeRunnerJob::boot() {
    QProcessEnvironment environment =
        WineEnvironment::forProcess(WineEnvironment::forCreation(bottle().path()));
    environment.remove("DISPLAY");
    environment.remove("WAYLAND_DISPLAY");
    m_boot = new WineCommand(m_runner.wine, {"wineboot.exe", "-u"}, environment, this);
    connect(m_boot, &WineCommand::finished, this, [this](const QString& fault) {
        m_boot->deleteLater();
        worked(fault);
    });
    m_boot->start(BootTimeoutMs);
}

void ChangeRunnerJob::abort() {
    if (m_boot)
        m_boot->kill();
    if (std::exchange(m_isWaiting, false))
        worked(Reason::Cancelled);
}

void ChangeRunnerJob::enter(BottleYaml* settings) {
    settings->set("Runner", m_runner.name);
    if (!m_oldKey.isEmpty())
        settings->set("Template", m_newKey);
}
