#include "shell/configuration/page/ProgramTrials.h"

#include <QDebug>

#include "shell/configuration/page/BottlePrograms.h"
#include "shell/configuration/page/BottleSettings.h"
#include "shell/configuration/page/DebugRun.h"
#include "shell/configuration/parameters/LogChannels.h"

ProgramTrials::ProgramTrials(BottleSettings* settings, BottlePrograms* programs, QObject* parent)
    : QObject(parent), m_settings(settings), m_programs(programs), m_run(new DebugRun(this)) {
    connect(m_run, &DebugRun::line, this, &ProgramTrials::line);
    connect(m_run, &DebugRun::failed, this, &ProgramTrials::failed);
    connect(m_run, &DebugRun::started, this, &ProgramTrials::changed);
    connect(m_run, &DebugRun::ended, this, [this](const QString& errorText) {
        if (!errorText.isEmpty())
            Q_EMIT line(errorText, true);
        Q_EMIT changed();
    });
}

/// What was not edited may have been changed elsewhere, and stays.
ProgramTrials::~ProgramTrials() {
    for (const ProgramEntry& entry : m_programs->list().entries()) {
        const auto edited = m_parameters.value(entry.id);
        if (edited && edited->toRecord() != EntryParameters(entry.recordWithId()).toRecord())
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

bool ProgramTrials::isRunning() const {
    return m_run->isRunning();
}

/// The launch script reads the parameters from the bottle, so they are saved first.
bool ProgramTrials::start(bool inTerminal) {
    const auto chosen = currentParameters();
    if (!chosen) {
        qWarning("Entry not found");
        return false;
    }
    if (isBusy())
        return false;
    m_isSaving = true;
    saveParameters(m_settings->bottle(), *chosen, this,
                   [this, id = m_programs->currentRef().uuid, inTerminal](const BusResult& result) {
                       m_isSaving = false;
                       if (result.ok)
                           run(id, inTerminal);
                       else
                           Q_EMIT failed(tr("The parameters could not be saved: %1").arg(result.errorText()));
                       Q_EMIT changed();
                   });
    Q_EMIT changed();
    return true;
}

void ProgramTrials::run(const QString& id, bool inTerminal) {
    const auto chosen = parameters(id);
    if (!chosen)
        return;
    const QString channels =
        LogChannels::environment(chosen->channels, m_settings->values().text(Setting::Runner));
    const ProgramEntry entry = m_programs->list().entries()[m_programs->list().indexOf(id)];
    m_run->start(
        {m_settings->bottle(), m_settings->record(), entry, {channels}, chosen->logPath, inTerminal});
}

void ProgramTrials::stop() {
    m_run->stop();
}
