#include "bottleservice/wire/ProgramsObject.h"

#include "bottleservice/requests/LifeRequests.h"

ProgramsObject::ProgramsObject(LifeRequests* requests, QObject* parent)
    : BusObject("/com/lumora/Manager/Programs", ":/wire/com.lumora.Manager.Programs.xml", parent) {
    handle("running", [requests](const QVariantList&, const Reply& reply) { reply(requests->running()); });
    connect(requests, &LifeRequests::programStarted, this, [this](const QString& bottle, const QString& id) {
        emitSignal("started", {bottle, id});
    });
    connect(requests, &LifeRequests::programEnded, this, [this](const QString& bottle, const QString& id) {
        emitSignal("ended", {bottle, id});
    });
}
