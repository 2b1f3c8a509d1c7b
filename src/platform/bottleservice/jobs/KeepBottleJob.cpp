#include "bottleservice/jobs/KeepBottleJob.h"

#include <QDebug>

#include "bottleservice/bottles/PackageOrigin.h"
#include "bottleservice/desktop/PackageIcons.h"
#include "bottleservice/files/Background.h"
#include "bottleservice/files/FullDisk.h"

using Fault = Answer::Fault;

namespace {

Reason keep(const QString& directory, const QString& shownName, const std::atomic_bool& cancelled) {
    const PackageOrigin::Facts facts = PackageOrigin::look(directory);
    if (PackageOrigin::stateOf(facts) == PackageOrigin::State::Installed)
        return Reason(Reason::PackageInstalled, {shownName});
    Reason fault = PackageOrigin::dropLinks(directory, facts.package, cancelled);
    if (!fault.isEmpty())
        return cancelled ? fault : FullDisk::explain(directory, fault);
    const QStringList icons = PackageIcons::find(directory, facts.package);
    fault = PackageOrigin::forget(directory);
    if (!fault.isEmpty())
        return fault;
    PackageIcons::remove(icons);
    qInfo() << "the bottle" << shownName << "belongs to no package any more";
    return {};
}

}  // namespace

void KeepBottleJob::start() {
    const Answer usable = m_bottle.check();
    if (!usable.isGood()) {
        finish(usable);
        return;
    }
    Background::run(
        this,
        [directory = m_bottle.path(), name = m_bottle.shownName(), cancelled = m_cancelled] {
            return keep(directory, name, *cancelled);
        },
        [this](const Reason& reason) {
            finish(reason.isEmpty() ? Answer::of() : Answer::failure(Fault::Failed, reason));
        });
}
