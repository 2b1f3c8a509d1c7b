#include "bottleservice/jobs/ChangeGraphicsJob.h"

#include <QFileInfo>

#include "bottleservice/components/GraphicsLayer.h"
#include "bottleservice/components/PrefixFiles.h"
#include "bottleservice/files/Background.h"
#include "bottleservice/wine/Templates.h"

ChangeGraphicsJob::ChangeGraphicsJob(const JobBottle& bottle, const char* key, const QString& version,
                                     const QString& directory, Reply reply)
    : InstallJob(bottle, std::move(reply)), m_key(key), m_version(version), m_directory(directory) {}

InstallJob::Need ChangeGraphicsJob::prepare(const BottleYaml& settings, const Runner&, Reason* refusal) {
    m_template = bottle().templates()->pathOf(settings.templateKey());
    if (!m_version.isEmpty()) {
        m_files = GraphicsLayer::dllsOf(m_directory);
        if (m_files.isEmpty())
            *refusal = QString("\"%1\" holds no DLLs.").arg(m_version);
    } else if (settings.record()[QLatin1String(m_key)].toString().isEmpty()) {
        return Need::Nothing;
    }
    return Need::Work;
}

void ChangeGraphicsJob::work() {
    Background::run(
        this,
        [prefix = bottle().path(), own = m_template, dlls = GraphicsLayer::knownDlls(m_key),
         files = m_files] {
            QString fault;
            for (const QString& dll : dlls) {
                if (fault.isEmpty())
                    fault = PrefixFiles::restoreOwn(prefix, own, dll);
            }
            return fault.isEmpty() ? PrefixFiles::putSystemFiles(prefix, files, false) : fault;
        },
        [this](const QString& fault) { worked(fault); });
}

void ChangeGraphicsJob::enter(BottleYaml* settings) {
    for (const QString& dll : GraphicsLayer::knownDlls(m_key))
        settings->removeOverride(QFileInfo(dll).baseName());
    for (const QString& file : qAsConst(m_files))
        settings->setOverride(QFileInfo(file).baseName(), "n");
    settings->set(m_key, m_version);
}
