#pragma once

#include <QObject>

#include "bottleservice/Answer.h"

class BottleEngine;

/// The requests about the programs of bottles: entered, changed, removed.
class ProgramRequests : public QObject {
    Q_OBJECT

public:
    explicit ProgramRequests(BottleEngine* engine, QObject* parent = nullptr);

    void updateExternalProgram(const QString& bottle, const QString& recordJson, const Reply& reply);
    void removeExternalProgram(const QString& bottle, const QString& programId, const Reply& reply);

Q_SIGNALS:
    void programAdded(const QString& bottle, const QString& programId, const QString& recordJson);
    void programUpdated(const QString& bottle, const QString& programId, const QString& recordJson);
    void programDeleted(const QString& bottle, const QString& programId);

private:
    Answer updateProgram(const QString& bottle, const QJsonObject& given);
    Answer removeProgram(const QString& bottle, const QString& programId);

    BottleEngine* m_engine;
};
