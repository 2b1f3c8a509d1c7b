#include "bottleservice/wire/RepairsObject.h"

#include "bottleservice/RepairRequests.h"

RepairsObject::RepairsObject(RepairRequests* requests, QObject* parent)
    : BusObject("/com/lumora/Manager/Repairs", ":/wire/com.lumora.Manager.Repairs.xml", parent) {
    handle("describe", [requests](const QVariantList& arguments, const Reply& reply) {
        requests->describe(arguments[0].toString(), arguments[1].toString(), arguments[2].toStringList(),
                           reply);
    });
    handle("takeFile", [requests](const QVariantList& arguments, const Reply& reply) {
        requests->takeFile(arguments[0].toString(), arguments[1].toString(), arguments[2].toString(), reply);
    });
}
