#include "bottleservice/wire/TemplatesObject.h"

#include "bottleservice/requests/TemplateRequests.h"

TemplatesObject::TemplatesObject(TemplateRequests* requests, QObject* parent)
    : BusObject("/com/lumora/Manager/Templates", ":/wire/com.lumora.Manager.Templates.xml", parent) {
    handle("recreate", [requests](const QVariantList&, const Reply& reply) { requests->recreate(reply); });
    connect(requests, &TemplateRequests::progress, this,
            [this](const QString& line) { emitSignal("progress", {line}); });
    connect(requests, &TemplateRequests::preparing, this, [this](const QString& runner, int percent) {
        emitSignal("preparing", {runner, percent});
    });
}
