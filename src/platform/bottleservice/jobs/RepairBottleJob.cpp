#include "bottleservice/jobs/RepairBottleJob.h"

#include <QDir>
#include <QFileInfo>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/files/Background.h"
#include "bottleservice/requests/BottleEngine.h"

RepairBottleJob::RepairBottleJob(BottleEngine* engine, const QString& bottle, std::shared_ptr<int> mended,
                                 Reply reply)
    : InstallJob(engine, bottle, std::move(reply)), m_mended(std::move(mended)) {}

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

/// A transaction needs something to back up. What stands in the way is left for it to refuse.
void RepairBottleJob::makeWindowsDirectory() {
    const QFileInfo drive(bottlePath() + "/drive_c");
    if (drive.isDir() && !drive.isSymLink())
        QDir(drive.filePath()).mkdir("windows");
}

void RepairBottleJob::work() {
    m_isWaiting = true;
    engine()->templates()->obtain(m_runner, this, [this](const QString& original, const Reason& reason) {
        if (!std::exchange(m_isWaiting, false))
            return;
        if (original.isEmpty()) {
            worked(reason);
            return;
        }
        Background::run(
            this,
            [prefix = bottlePath(), original, links = m_links, mended = m_mended, stop = cancelled()] {
                const QStringList files = PrefixDamage::find(prefix, original, *stop);
                *mended = files.size();
                return PrefixDamage::mend(prefix, original, files, links, *stop);
            },
            [this](const QString& fault) { worked(fault); });
    });
}

void RepairBottleJob::abort() {
    if (std::exchange(m_isWaiting, false))
        worked(Reason(Reason::Cancelled));
}
