#include "bottleservice/wire/ManagerObject.h"

ManagerObject::ManagerObject(const QString& version, QObject* parent)
    : BusObject("/com/lumora/Manager", ":/wire/com.lumora.Manager.xml", parent) {
    handle("GetVersion", [version](const QVariantList&, const Reply& reply) { reply(Answer::of(version)); });
    // Replies first: the caller must not wait until running work has been cancelled.
    handle("Quit", [this](const QVariantList&, const Reply& reply) {
        reply(Answer::of());
        Q_EMIT quitRequested();
    });
}
