#include "core/Refusals.h"

#include <QDebug>

#include "backend/SessionBus.h"
#include "launch/banner/RefusalNotice.h"
#include "launch/inspection/OpenRefusal.h"

bool Refusals::show(const QString& path, const OpenRefusal& refusal) {
    if (!refusal)
        return false;
    m_hasRefused = true;
    qWarning().noquote() << refusal.logLine;
    RefusalNotice::show(path, refusal, m_window);
    return true;
}

bool Refusals::refusesFile(const QString& path) {
    return show(path, OpenRefusal::of(path));
}

bool Refusals::refusesWithoutBus() {
    return show({}, SessionBus::isConnected() ? OpenRefusal() : OpenRefusal::noSessionBus());
}

bool Refusals::refusesStoredProgram() {
    return refusesWithoutBus() || show({}, OpenRefusal::ofBottlesPlace());
}

void Refusals::refuseOther(const QString& path) {
    const OpenRefusal refusal = OpenRefusal::ofOther(path);
    if (m_window) {
        show(path, refusal);
        return;
    }
    if (RefusalNotice::notify(path, refusal))
        m_hasRefused = true;
}
