#include "bottleservice/jobs/RepairBottleJob.h"

#include <QDir>
#include <QFileInfo>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/files/Background.h"
#include "bottleservice/wine/Templates.h"

RepairBottleJob::RepairBottleJob(const JobBottle& bottle, std::shared_ptr<int> renewed, Reply reply)
    : InstallJob(bottle, std::move(reply)), m_renewed(std::move(renewed)) {}

InstallJob::Need RepairBottleJob::prepare(const BottleYaml& settings, const Runner& runner, Reason* refusal) {
    m_runner = runner;
    if (settings.templateKey().isEmpty())
        m_links = PrefixDamage::Links::Copied;
    if (runner.wine.isEmpty())
        *refusal = Reason(Reason::NoRunner, {BottleName::shown(settings.runner())});
    else
        makeWindowsDirectory();
    return Need::Work;
}

/// The transaction needs a directory to back up. Where something else has its name, the transaction fails.
void RepairBottleJob::makeWindowsDirectory() {
    const QFileInfo drive(bottle().path() + "/drive_c");
    if (drive.isDir() && !drive.isSymLink())
        QDir(drive.filePath()).mkdir("windows");
}

void RepairBottleJob::work() {
    m_isWaiting = true;
    bottle().templates()->obtain(m_runner, this, [this](const QString& original, const Reason& reason) {
        if (!std::exchange(m_isWaiting, false))
            return;
        if (original.isEmpty()) {
            worked(reason);
            return;
        }
        Background::run(
            this,
            [prefix = bottle().path(), original, links = m_links, renewed = m_renewed, stop = cancelled()] {
                const QStringList files = PrefixDamage::find(prefix, original, *stop);
                *renewed = files.size();
                return PrefixDamage::restore(prefix, original, files, links, *stop);
            },
            [this](const QString& fault) { worked(fault); });
    });
}

void RepairBottleJob::abort() {
    if (std::exchange(m_isWaiting, false))
        worked(Reason(Reason::Cancelled));
}
