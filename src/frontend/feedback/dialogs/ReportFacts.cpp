#include "feedback/dialogs/ReportFacts.h"

#include <QDir>
#include <QTemporaryDir>

#include "backend/InBackground.h"
#include "feedback/client/VersionQuery.h"
#include "probes/HardwareInfo.h"

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
    LogUpload::copyLogs(m_bottle, this, [this](const LogUpload::Copies& copies) {
        m_logs = copies;
        endPart();
    });
}

void ReportFacts::endPart() {
    if (--m_left == 0)
        Q_EMIT ready();
}

QStringList ReportFacts::logFiles() const {
    QStringList files;
    if (m_logs) {
        const QDir directory(m_logs->path());
        for (const QString& name : directory.entryList(QDir::Files | QDir::Hidden, QDir::Name))
            files += directory.filePath(name);
    }
    return files;
}
