#pragma once

#include <QObject>
#include <QStringList>

#include "launch/MsgType.h"

/// A repair that the background service carries out in a bottle between two starts. Starts with start() and
/// ends once, with done() or cancel(). Lives in the GUI thread and never blocks.
class RepairStep : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    virtual void start() = 0;
    /// Continues after blocked(), when those programs have exited.
    virtual void retry() = 0;
    /// Ends without done(); the service rolls back its changes.
    virtual void cancel() = 0;

Q_SIGNALS:
    void emitMsg(const QString& text, MsgType recordType = MsgLine);
    /// These programs run in the bottle; the step waits for retry() or cancel().
    void blocked(const QStringList& programs);
    /// `error` is for the user; empty on success.
    void done(const QString& error);
};
