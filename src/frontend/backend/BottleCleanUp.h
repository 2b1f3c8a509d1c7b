#pragma once

#include <QDBusAbstractInterface>

#include "backend/BusCall.h"
#include "fenk/system/Singleton.h"

/// The client of the background service's interface for what launches leave behind; holds no state. Lives in
/// the GUI thread.
class BottleCleanUp : public QDBusAbstractInterface, public Fenk::Singleton<BottleCleanUp> {
    Q_OBJECT
    friend class Fenk::Singleton<BottleCleanUp>;

public:
    /// Lets the service delete the bottle when nothing was installed in it; the entry with the ignored id
    /// does not count. The answer is an object: "deleted"; and unless that is true "reason", a text for the
    /// log, and "programs", the ids that the bottle has besides the ignored one.
    void deleteIfUnused(const QString& bottle, const QString& ignoredProgram, QObject* context,
                        const BusCall::Handler& handler);

private:
    BottleCleanUp();
};
