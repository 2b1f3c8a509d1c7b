#include "bottleservice/wire/RepairObject.h"

#include "bottleservice/RepairRequests.h"
#include "bottleservice/wire/TextMethods.h"

RepairObject::RepairObject(RepairRequests* requests, QObject* parent)
    : BusObject("/com/lumora/Manager/Repair", ":/wire/com.lumora.Manager.Repair.xml", parent) {
    handle("runnersFor32Bit",
           [requests](const QVariantList&, const Reply& reply) { reply(requests->runnersFor32Bit()); });
    handleOneText<RepairRequests>(this, requests,
                                  {{"damage", &RepairRequests::damage},
                                   {"renewBottle", &RepairRequests::renewBottle},
                                   {"cancelRenewal", &RepairRequests::cancelRenewal}});
}
