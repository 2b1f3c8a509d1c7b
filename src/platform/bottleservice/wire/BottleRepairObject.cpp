#include "bottleservice/wire/BottleRepairObject.h"

#include "bottleservice/BottleRepairRequests.h"
#include "bottleservice/wire/TextMethods.h"

BottleRepairObject::BottleRepairObject(BottleRepairRequests* requests, QObject* parent)
    : BusObject("/com/lumora/Manager/BottleRepair", ":/wire/com.lumora.Manager.BottleRepair.xml", parent) {
    handle("runnersFor32Bit",
           [requests](const QVariantList&, const Reply& reply) { reply(requests->runnersFor32Bit()); });
    handleOneText<BottleRepairRequests>(this, requests,
                                        {{"damage", &BottleRepairRequests::damage},
                                         {"renewBottle", &BottleRepairRequests::renewBottle},
                                         {"cancelRenewal", &BottleRepairRequests::cancelRenewal}});
}
