#include "bottleservice/wire/ProgramsObject.h"

#include "bottleservice/requests/ProcessRequests.h"

ProgramsObject::ProgramsObject(ProcessRequests* requests, QObject* parent)
    : BusObject("/com/lumora/Manager/Programs", ":/wire/com.lumora.Manager.Programs.xml", parent) {
    handle("running", [requests](const QVariantList&, const Reply& reply) { reply(requests->running()); });
    connect(requests, &ProcessRequests::programStarted, this,
            [this](const QString& bottle, const QString& id) {
                emitSignal("started", {bottle, id});
            });
    connect(requests, &ProcessRequests::programEnded, this, [this](const QString& bottle, const QString& id) {
        emitSignal("ended", {bottle, id});
    });
}
