#include "shell/configuration/page/ProgramFindings.h"

#include <QDateTime>
#include <QFileInfo>
#include <QRegularExpression>

#include "backend/BottleLogs.h"
#include "backend/BottleRecord.h"
#include "backend/InBackground.h"
#include "backend/ProgramRecord.h"
#include "launch/records/AppBootingStateManager.h"
#include "launch/records/FailedStarts.h"
#include "programs/ProgramRuns.h"
#include "shell/configuration/page/BottlePrograms.h"
#include "shell/configuration/page/BottleSettings.h"
#include "shell/configuration/page/DebuggingLogsFrame.h"
#include "shell/configuration/page/LiveLog.h"
#include "shell/configuration/page/LogFile.h"
#include "shell/configuration/page/ProgramTrials.h"
#include "shell/configuration/parameters/WineParamsCfgWidget.h"

namespace {

constexpr qint64 LastLogBytes = 2 << 20;  ///< more than the pane keeps of lines of usual length

/// The log of the program's last start, as a stored program or as a file.
QString lastLog(const QString& bottlePath, const ProgramEntry& entry) {
    const QString file = ProgramRecord::path(entry.record).section(QRegularExpression("[/\\\\]"), -1);
    QFileInfo log(BottleLogs::ofProgram(bottlePath, entry.id));
    const QFileInfo ofFile(BottleLogs::ofExe(bottlePath, file));
    if (!log.isFile() || (ofFile.isFile() && ofFile.lastModified() > log.lastModified()))
        log = ofFile;
    return log.isFile() ? log.filePath() : QString();
}

}  // namespace

ProgramFindings::ProgramFindings(const Parts& parts, QObject* parent) : QObject(parent), m_parts(parts) {
    const ProgramTrials* trials = parts.trials;
    connect(trials, &ProgramTrials::linesRead, this,
            [this](const QString& id, const QVector<LiveLogLine>& lines) {
                if (id == m_shownProgram)
                    m_parts.frame->append(lines);
            });
    connect(trials, &ProgramTrials::runStarted, this, &ProgramFindings::onRunStarted);
    connect(trials, &ProgramTrials::runEnded, this, [this](const QString& id, const QString& logPath) {
        m_results.insert(id, m_hasLaunchResult);
        look(id, logPath, true);
    });
    // What was chosen during a run is shown after it.
    connect(trials, &ProgramTrials::changed, this, &ProgramFindings::onCurrentChanged);
    connect(parts.frame, &DebuggingLogsFrame::cleared, this, &ProgramFindings::stopReading);
    connect(AppBootingStateManager::instance(), &AppBootingStateManager::launchResult, this,
            [this](const QString& id) { m_hasLaunchResult = m_hasLaunchResult || id == m_runProgram; });
    connect(ProgramRuns::instance(), &ProgramRuns::changed, this,
            [this](const ProgramRef& ref, bool isRunning) {
                if (isRunning && ref.bottle == m_parts.settings->bottle())
                    m_results.remove(ref.uuid);
            });
    connect(parts.programs, &BottlePrograms::currentChanged, this, &ProgramFindings::onCurrentChanged);
    connect(&m_search, &HintSearch::found, parts.frame, &DebuggingLogsFrame::showHints);
    connect(&m_search, &HintSearch::changed, this,
            [this] { m_parts.frame->setReading(m_search.isUnderWay()); });
}

void ProgramFindings::onRunStarted(const QString& programId) {
    stopReading();
    m_hasLaunchResult = false;
    m_runProgram = programId;
    m_shownProgram = programId;
    m_parts.frame->clear();
}

void ProgramFindings::stopReading() {
    m_search.cancel();
    delete std::exchange(m_lastLog, nullptr);
    ++m_reads;
}

void ProgramFindings::append(const QString& text) {
    if (!m_appended) {
        m_appended = new LiveLog(this);
        connect(m_appended, &LiveLog::linesRead, m_parts.frame, &DebuggingLogsFrame::append);
    }
    m_appended->add(text.toUtf8());
}

void ProgramFindings::showLast() {
    m_isShown = true;
    onCurrentChanged();
}

void ProgramFindings::readAgain() {
    m_results.clear();
    if (!m_parts.trials->isBusy())
        m_shownProgram.clear();
    showLast();
}

void ProgramFindings::onCurrentChanged() {
    const ProgramEntry* entry = m_parts.programs->list().currentEntry();
    const QString bottlePath = BottleRecord::path(m_parts.settings->record());
    if (!m_isShown || !entry || entry->id == m_shownProgram || m_parts.trials->isBusy() ||
        bottlePath.isEmpty())
        return;
    m_shownProgram = entry->id;
    stopReading();
    m_parts.frame->clear();
    inBackground(
        this, [bottlePath, entry = *entry] { return lastLog(bottlePath, entry); },
        [this, id = entry->id, number = m_reads](const QString& log) {
            if (number == m_reads && !log.isEmpty())
                readLast(id, log);
        });
}

void ProgramFindings::readLast(const QString& programId, const QString& logPath) {
    m_lastLog = new LiveLog(this);
    connect(m_lastLog, &LiveLog::linesRead, m_parts.frame, &DebuggingLogsFrame::appendEarlier);
    inBackground(
        m_lastLog, [logPath] { return LogFile::end(logPath, LastLogBytes).value_or(QByteArray()); },
        [log = m_lastLog](const QByteArray& bytes) {
            log->add(bytes);
            log->end();
        });
    if (!ProgramRuns::instance()->isRunning({m_parts.settings->bottle(), programId}))
        look(programId, logPath, false);
}

/// Of a run before this window only a failure is known.
bool ProgramFindings::hasLaunchResult(const QString& programId) const {
    return m_results.contains(programId)
               ? m_results.value(programId)
               : !FailedStarts::instance()->find(m_parts.settings->bottle(), programId);
}

void ProgramFindings::look(const QString& programId, const QString& logPath, bool isAfterRun) {
    const EntryList& list = m_parts.programs->list();
    const int index = list.indexOf(programId);
    const BottleSettings* settings = m_parts.settings;
    HintFacts shown;
    shown.runner = settings->values().text(Setting::Runner);
    shown.hasDxvk = !settings->values().text(Setting::Dxvk).isEmpty();
    shown.hasTranslators = m_parts.parameters->hasTranslators();
    shown.hasLaunchResult = hasLaunchResult(programId);
    m_search.start({settings->bottle(), BottleRecord::path(settings->record()),
                    index < 0 ? QString() : ProgramRecord::path(list.entries()[index].record), logPath, shown,
                    isAfterRun});
}
