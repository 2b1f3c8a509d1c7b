#pragma once

#include <QJsonObject>
#include <QString>
#include <functional>

#include "backend/BusResult.h"

class QObject;

/// What a user can set for the runs of one program of a bottle; the window keeps one for each of its entries.
/// Channels and log path live only as long as that.
class EntryParameters {
public:
    EntryParameters() = default;
    /// With the arguments and variables of a program record.
    explicit EntryParameters(const QJsonObject& record);

    /// Takes what has not been edited from the record as it is now. Returns whether a text has changed.
    bool setRecord(const QJsonObject& record);

    /// {"id", "arguments", "envs"}, to be merged into the program's record. Variables whose text nobody has
    /// edited stay exactly as they were read.
    QJsonObject toRecord() const;

    /// Whether the text of the variables differs from what was read.
    bool isEnvironmentEdited() const { return environment != m_envsText; }
    /// Whether anything that is saved differs from what was read.
    bool isEdited() const { return isEnvironmentEdited() || arguments != m_arguments; }

    QString arguments;
    QString environment;  ///< as of EnvironmentText
    QString channels;     ///< as of LogChannels; empty: the default ones
    QString logPath;      ///< empty: the default file

private:
    QString m_id;
    QString m_arguments;  ///< this and the next two as they were read
    QJsonObject m_envs;
    QString m_envsText;
};

/// Saves the parameters in the program's record without blocking, one save after the other; the process does
/// not end before. A failure is logged. With a context, `done` gets the end in its thread, unless the context
/// is destroyed first.
void saveParameters(const QString& bottle, const EntryParameters& parameters, QObject* context = nullptr,
                    const std::function<void(const BusResult&)>& done = {});
