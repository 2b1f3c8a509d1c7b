#pragma once

#include <QObject>
#include <QStringList>

#include "launch/MsgType.h"

/// A repair that the background service carries out in a bottle between two starts. Begins with start() and
/// ends once, with done() or with cancel(). Lives in the GUI thread and never waits.
class RepairStep : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    virtual void start() = 0;
    /// Goes on after blocked(), when those programs have been ended.
    virtual void retry() = 0;
    /// Ends without done(); the service rolls back what it has begun.
    virtual void cancel() = 0;

Q_SIGNALS:
    void emitMsg(const QString& text, MsgType recordType = MsgLine);
    /// These run in the bottle; the step waits for retry() or cancel().
    void blocked(const QStringList& programs);
    /// Empty on success, else for the user.
    void done(const QString& error);
};
