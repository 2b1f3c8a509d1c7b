#pragma once

#include "backend/ServiceProxy.h"

/// The client of the background service's interface for what launches and removed packages leave behind;
/// holds no state. Lives in the GUI thread.
class BottleCleanUp : public ServiceProxy<BottleCleanUp> {
    Q_OBJECT
    friend class Fenk::Singleton<BottleCleanUp>;

public:
    /// Lets the service delete the bottle when nothing was installed in it; the entry with the ignored id
    /// does not count. The answer is an object: "deleted"; and unless that is true "reason", a text for the
    /// log, and "programs", the ids that the bottle has besides the ignored one.
    void deleteIfUnused(const QString& bottle, const QString& ignoredProgram, QObject* context,
                        const Handler& handler) {
        watch("deleteIfUnused", {bottle, ignoredProgram}, context, handler);
    }
    /// The bottles whose package is not installed any more; the answer is an array of objects: "bottle",
    /// "package", "lost" (an array of ids of programs whose files are gone).
    void bottlesOfRemovedPackages(QObject* context, const Handler& handler) {
        watch("bottlesOfRemovedPackages", {}, context, handler);
    }
    /// Makes such a bottle an ordinary one.
    void keepBottle(const QString& bottle, QObject* context, const Handler& handler) {
        watch("keepBottle", {bottle}, context, handler, BusReply::Wanted::Ignored);
    }

private:
    BottleCleanUp() : ServiceProxy("CleanUp", LongTimeoutMs) {}
};
