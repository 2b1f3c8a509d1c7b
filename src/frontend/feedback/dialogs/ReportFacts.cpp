#include "feedback/dialogs/ReportFacts.h"

#include <QDir>
#include <QTemporaryDir>

#include "backend/BottlesConfig.h"
#include "backend/EmulatorPackage.h"
#include "backend/InBackground.h"
#include "probes/HardwareInfo.h"
#include "probes/MachineUtils.h"

namespace {

/// Windows programs need an emulator on these processors.
bool needsEmulator() {
    static const bool needs = [] {
        const QString architecture = MachineUtils::cpuArchitecture();
        return architecture.contains("arm") || architecture.contains("loongarch");
    }();
    return needs;
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
    BottlesConfig::instance()->watchBottle(m_bottle, this, [this](const BusResult& result) {
        m_versions = BottleVersions::of(m_bottle, result.object());
        if (needsEmulator())
            collectEmulator();
        else
            endPart();
    });
    LogUpload::copyLogs(m_bottle, this, [this](const LogUpload::Copies& copies) {
        m_logs = copies;
        endPart();
    });
}

void ReportFacts::collectEmulator() {
    callServiceAsync(
        this, [bottle = m_bottle] { return EmulatorPackage::describe(bottle); },
        [this](const QString& emulator) {
            m_versions.emulatorVersion = emulator;
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
