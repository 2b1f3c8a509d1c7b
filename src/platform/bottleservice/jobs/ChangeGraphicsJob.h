#pragma once

#include <QStringList>

#include "bottleservice/jobs/InstallJob.h"

/// Installs a version of DXVK or VKD3D into a bottle, or removes it and restores Wine's own DLLs.
class ChangeGraphicsJob : public InstallJob {
    Q_OBJECT

public:
    /// `key` is that of bottle.yml, "DXVK" or "VKD3D". `directory` holds the version's DLLs below "x64" and
    /// "x32" or "x86". An empty version removes the layer.
    ChangeGraphicsJob(const JobBottle& bottle, const char* key, const QString& version,
                      const QString& directory, Reply reply);

protected:
    Need prepare(const BottleYaml& settings, const Runner& runner, Reason* refusal) override;
    void work() override;
    void abort() override {}
    void enter(BottleYaml* settings) override;

private:
    const char* m_key;
    QString m_version;
    QString m_directory;
    QString m_template;
    QStringList m_files;  ///< of the new version
};
