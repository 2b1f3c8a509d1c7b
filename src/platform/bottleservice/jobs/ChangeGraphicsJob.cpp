#include "bottleservice/jobs/ChangeGraphicsJob.h"

#include <QDir>
#include <QFileInfo>

#include "bottleservice/components/PrefixFiles.h"
#include "bottleservice/files/Background.h"
#include "bottleservice/wine/Templates.h"

namespace {

/// The DLLs that any version of the layer has ever had.
QStringList knownDlls(const QString& key) {
    if (key == "DXVK")
        return {"d3d8.dll", "d3d9.dll", "d3d10.dll", "d3d10_1.dll", "d3d10core.dll", "d3d11.dll", "dxgi.dll"};
    return {"d3d12.dll", "d3d12core.dll"};
}

QStringList dllsOf(const QString& directory) {
    QStringList files;
    for (const char* part : {"x64", "x32", "x86"}) {
        const QDir place(directory + '/' + part);
        for (const QString& name : place.entryList({"*.dll"}, QDir::Files | QDir::NoSymLinks))
            files += place.filePath(name);
    }
    return files;
}

}  // namespace

ChangeGraphicsJob::ChangeGraphicsJob(const JobBottle& bottle, const char* key, const QString& version,
                                     const QString& directory, Reply reply)
    : InstallJob(bottle, std::move(reply)), m_key(key), m_version(version), m_directory(directory) {}

InstallJob::Need ChangeGraphicsJob::prepare(const BottleYaml& settings, const Runner&, Reason* refusal) {
    m_template = bottle().templates()->pathOf(settings.templateKey());
    if (!m_version.isEmpty()) {
        m_files = dllsOf(m_directory);
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
        [prefix = bottle().path(), own = m_template, dlls = knownDlls(m_key), files = m_files] {
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
    for (const QString& dll : knownDlls(m_key))
        settings->removeFrom("DLL_Overrides", QFileInfo(dll).baseName());
    for (const QString& file : qAsConst(m_files))
        settings->setIn("DLL_Overrides", QFileInfo(file).baseName(), "n");
    settings->set(m_key, m_version);
}
