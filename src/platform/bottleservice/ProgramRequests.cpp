#include "bottleservice/ProgramRequests.h"

#include <QDateTime>
#include <QDebug>
#include <QJsonDocument>
#include <QJsonObject>

#include "bottleservice/BottleEngine.h"
#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/bottles/Programs.h"

using Fault = Answer::Fault;

namespace {

Answer noProgram(const QString& bottle, const QString& id) {
    return Answer::failure(Fault::NoSuchProgram, QString("The bottle \"%1\" has no program \"%2\".")
                                                     .arg(BottleName::shown(bottle), BottleName::shown(id)));
}

}  // namespace

ProgramRequests::ProgramRequests(BottleEngine* engine, QObject* parent) : QObject(parent), m_engine(engine) {}

void ProgramRequests::updateExternalProgram(const QString& bottle, const QString& recordJson,
                                            const Reply& reply) {
    if (m_engine->refuse(bottle, reply))
        return;
    QString error;
    const QJsonObject given = Programs::parse(recordJson, &error);
    if (!error.isEmpty()) {
        reply(Answer::failure(Fault::InvalidArgs, error));
        return;
    }
    m_engine->enqueue(bottle, reply, [this, bottle, given] { return updateProgram(bottle, given); });
}

void ProgramRequests::removeExternalProgram(const QString& bottle, const QString& programId,
                                            const Reply& reply) {
    if (!m_engine->refuse(bottle, reply))
        m_engine->enqueue(bottle, reply,
                          [this, bottle, programId] { return removeProgram(bottle, programId); });
}

Answer ProgramRequests::updateProgram(const QString& bottle, const QJsonObject& given) {
    Answer failure;
    auto settings = m_engine->loaded(bottle, &failure);
    if (!settings)
        return failure;
    QString error;
    const QString id = given.value("id").toString();
    const bool isNew = !settings->hasProgram(id);
    const QJsonObject record = isNew ? Programs::completed(given, QDateTime::currentDateTime(), &error)
                                     : Programs::merged(settings->program(id), given);
    if (record.isEmpty())
        return Answer::failure(Fault::InvalidArgs, error);
    if (!isNew && record == settings->program(id))
        return Answer::of();
    // Only what was given: the rest stays as it was written.
    settings->setProgram(id, isNew ? record : given);
    if (!m_engine->saveSettings(bottle, *settings, &error))
        return Answer::failure(Fault::Failed, error);
    qInfo() << (isNew ? "added program" : "changed program") << id << "of" << BottleName::shown(bottle);
    const QString text =
        QString::fromUtf8(QJsonDocument(settings->program(id)).toJson(QJsonDocument::Compact));
    if (isNew)
        Q_EMIT programAdded(bottle, id, text);
    else
        Q_EMIT programUpdated(bottle, id, text);
    return Answer::of();
}

Answer ProgramRequests::removeProgram(const QString& bottle, const QString& programId) {
    Answer failure;
    auto settings = m_engine->loaded(bottle, &failure);
    if (!settings)
        return failure;
    QString error;
    if (!settings->removeProgram(programId))
        return noProgram(bottle, programId);
    if (!m_engine->saveSettings(bottle, *settings, &error))
        return Answer::failure(Fault::Failed, error);
    qInfo() << "removed program" << BottleName::shown(programId) << "of" << BottleName::shown(bottle);
    Q_EMIT programDeleted(bottle, programId);
    return Answer::of();
}
