#include "feedback/dialogs/ReportFacts.h"

#include <QDir>
#include <QTemporaryDir>

#include "backend/InBackground.h"
#include "feedback/client/VersionQuery.h"
#include "probes/HardwareInfo.h"

namespace {

QStringList filesIn(const QString& path) {
    QStringList files;
    const QDir directory(path);
    for (const QString& name : directory.entryList(QDir::Files | QDir::Hidden, QDir::Name))
        files += directory.filePath(name);
    return files;
}

}  // namespace

void ReportFacts::collect() {
    if (m_isStarted)
        return;
    m_isStarted = true;
    m_left = 1;
    inBackground(
        this, [] { return machineInfo().value("hardware").toObject(); },
        [this](const QJsonObject& hardware) {
            m_hardware = hardware;
            endPart();
        });
    if (!m_bottle.isEmpty())
        collectBottle();
}

void ReportFacts::collectBottle() {
    m_left += 2;
    VersionQuery::ask(m_bottle, this, [this](const BottleVersions& versions, const QJsonObject&) {
        m_versions = versions;
        endPart();
    });
    LogUpload::collectLogs(m_bottle, this, [this](const LogUpload::Copies& copies) {
        inBackground(
            this, [copies] { return copies ? filesIn(copies->path()) : QStringList(); },
            [this, copies](const QStringList& files) {
                m_logs = copies;
                m_logFiles = files;
                endPart();
            });
    });
}

void ReportFacts::endPart() {
    if (--m_left == 0)
        Q_EMIT ready();
}
