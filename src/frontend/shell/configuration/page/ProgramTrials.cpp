#include "shell/configuration/page/ProgramTrials.h"

#include <QDebug>

#include "backend/BottleLogs.h"
#include "backend/BottleRecord.h"
#include "backend/InBackground.h"
#include "shell/configuration/page/BottlePrograms.h"
#include "shell/configuration/page/BottleSettings.h"
#include "shell/configuration/page/DebugRun.h"
#include "shell/configuration/page/LogFile.h"
#include "shell/configuration/parameters/LogChannels.h"

ProgramTrials::ProgramTrials(BottleSettings* settings, BottlePrograms* programs, QObject* parent)
    : QObject(parent), m_settings(settings), m_programs(programs), m_run(new DebugRun(this)) {
    connect(programs, &BottlePrograms::changed, this, &ProgramTrials::onProgramsChanged);
    connect(m_run, &DebugRun::linesRead, this,
            [this](const QVector<LiveLogLine>& lines) { Q_EMIT linesRead(m_run->program().uuid, lines); });
    connect(m_run, &DebugRun::failed, this, &ProgramTrials::failed);
    connect(m_run, &DebugRun::started, this, [this] { Q_EMIT runStarted(m_run->program().uuid); });
    connect(m_run, &DebugRun::started, this, &ProgramTrials::changed);
    connect(m_run, &DebugRun::ended, this, [this](const QString& errorText, bool hasRun) {
        const QString id = m_run->program().uuid;
        if (!errorText.isEmpty())
            Q_EMIT linesRead(id, {{errorText, true}});
        if (hasRun)
            Q_EMIT runEnded(id, m_run->logPath());
        Q_EMIT changed();
    });
}

/// What was not edited may have been changed elsewhere, and stays.
ProgramTrials::~ProgramTrials() {
    for (const ProgramEntry& entry : m_programs->list().entries()) {
        const auto edited = m_parameters.value(entry.id);
        if (edited && edited->isEdited())
            saveParameters(m_settings->bottle(), *edited);
    }
}

std::shared_ptr<EntryParameters> ProgramTrials::parameters(const QString& id) {
    const int index = m_programs->list().indexOf(id);
    if (index < 0)
        return {};
    std::shared_ptr<EntryParameters>& known = m_parameters[id];
    if (!known)
        known = std::make_shared<EntryParameters>(m_programs->list().entries()[index].recordWithId());
    return known;
}

std::shared_ptr<EntryParameters> ProgramTrials::currentParameters() {
    return parameters(m_programs->currentRef().uuid);
}

void ProgramTrials::onProgramsChanged() {
    const auto current = currentParameters();
    bool isOther = current != m_current;
    for (const ProgramEntry& entry : m_programs->list().entries()) {
        const auto known = m_parameters.value(entry.id);
        const bool hasChanged = known && known->setRecord(entry.recordWithId());
        isOther = isOther || (hasChanged && known == current);
    }
    m_current = current;
    if (isOther)
        Q_EMIT parametersChanged(current);
}

bool ProgramTrials::isRunning() const {
    return m_run->isRunning();
}

/// The launch script reads parameters and settings from the bottle, so they are saved first.
bool ProgramTrials::start(bool inTerminal) {
    const auto chosen = currentParameters();
    if (!chosen) {
        qWarning("Entry not found");
        return false;
    }
    if (isBusy())
        return false;
    m_isPreparing = true;
    saveParameters(m_settings->bottle(), *chosen, this,
                   [this, id = m_programs->currentRef().uuid, inTerminal](const BusResult& result) {
                       if (result.ok) {
                           m_settings->whenSent(this, [this, id, inTerminal] { prepare(id, inTerminal); });
                           return;
                       }
                       m_isPreparing = false;
                       Q_EMIT failed(tr("The parameters could not be saved: %1").arg(result.errorText()));
                       Q_EMIT changed();
                   });
    Q_EMIT changed();
    return true;
}

/// What the log says afterwards is said by this run.
void ProgramTrials::prepare(const QString& id, bool inTerminal) {
    const QString log = BottleLogs::ofProgram(BottleRecord::path(m_settings->record()), id);
    inBackground(
        this, [log] { return LogFile::empty(log); },
        [this, id, inTerminal](bool) {
            m_isPreparing = false;
            run(id, inTerminal);
            Q_EMIT changed();
        });
}

void ProgramTrials::run(const QString& id, bool inTerminal) {
    const auto chosen = parameters(id);
    if (!chosen) {
        Q_EMIT failed(tr("The application is no longer in this container."));
        return;
    }
    const QString channels =
        LogChannels::environment(chosen->channels, m_settings->values().text(Setting::Runner));
    const ProgramEntry entry = m_programs->list().entries()[m_programs->list().indexOf(id)];
    m_run->start(
        {m_settings->bottle(), m_settings->record(), entry, {channels}, chosen->logPath, inTerminal});
}

QString ProgramTrials::runningName() const {
    const int index = isRunning() ? m_programs->list().indexOf(m_run->program().uuid) : -1;
    return index < 0 ? QString() : m_programs->list().entries()[index].name();
}

void ProgramTrials::stop() {
    m_run->stop();
}
