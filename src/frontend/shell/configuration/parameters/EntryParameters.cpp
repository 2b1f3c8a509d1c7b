#include "shell/configuration/parameters/EntryParameters.h"

#include <QDebug>

#include "backend/BottlesConfig.h"
#include "backend/InBackground.h"
#include "backend/ProgramRecord.h"
#include "shell/configuration/parameters/EnvironmentText.h"

EntryParameters::EntryParameters(const QJsonObject& record) : m_id(ProgramRecord::id(record)) {
    setRecord(record);
}

bool EntryParameters::setRecord(const QJsonObject& record) {
    const QString oldArguments = arguments;
    const QString oldEnvironment = environment;
    const QJsonObject envs = ProgramRecord::envs(record);
    const bool isSaved = toRecord().value("envs") == envs;
    if (arguments == m_arguments)
        arguments = ProgramRecord::arguments(record);
    m_arguments = ProgramRecord::arguments(record);
    // There are several texts for the same variables: that of the user stays.
    const QString envsText = isSaved ? environment : EnvironmentText::write(envs);
    if (!isEnvironmentEdited())
        environment = envsText;
    m_envs = envs;
    m_envsText = envsText;
    return arguments != oldArguments || environment != oldEnvironment;
}

QJsonObject EntryParameters::toRecord() const {
    QJsonObject envs = m_envs;
    if (isEnvironmentEdited()) {
        envs = {};
        const EnvironmentText::Parsed parsed = EnvironmentText::parse(environment);
        for (auto it = parsed.values.begin(); it != parsed.values.end(); ++it)
            envs.insert(it.key(), it.value());
    }
    return {{"id", m_id}, {"arguments", arguments}, {"envs", envs}};
}

void saveParameters(const QString& bottle, const EntryParameters& parameters, QObject* context,
                    const std::function<void(const BusResult&)>& done) {
    const QJsonObject record = parameters.toRecord();
    changeServiceAsync(
        context,
        [bottle, record] {
            const BusResult result = BottlesConfig::instance()->updateExternalProgram(bottle, record);
            if (!result.ok)
                qWarning().noquote().nospace() << "can't save the parameters of " << ProgramRecord::id(record)
                                               << " in " << bottle << ": " << result.errorMessage;
            return result;
        },
        [done](const BusResult& result) {
            if (done)
                done(result);
        },
        ServiceThreads::inOrder());
}
