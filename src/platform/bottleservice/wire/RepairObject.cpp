#include "bottleservice/wire/RepairObject.h"

#include "bottleservice/RenewalRequests.h"
#include "bottleservice/wire/TextMethods.h"

RepairObject::RepairObject(RenewalRequests* requests, QObject* parent)
    : BusObject("/com/lumora/Manager/Repair", ":/wire/com.lumora.Manager.Repair.xml", parent) {
    handle("runnersFor32Bit",
           [requests](const QVariantList&, const Reply& reply) { reply(requests->runnersFor32Bit()); });
    handleOneText<RenewalRequests>(this, requests,
                                   {{"damage", &RenewalRequests::damage},
                                    {"renewBottle", &RenewalRequests::renewBottle},
                                    {"cancelRenewal", &RenewalRequests::cancelRenewal}});
}
