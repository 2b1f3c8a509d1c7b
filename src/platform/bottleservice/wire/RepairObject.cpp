#include "bottleservice/wire/RepairObject.h"

#include "bottleservice/requests/BottleRepairRequests.h"
#include "bottleservice/requests/DependencyRequests.h"
#include "bottleservice/requests/RepairOfferRequests.h"
#include "bottleservice/wire/TextMethods.h"

RepairObject::RepairObject(RepairOfferRequests* offers, BottleRepairRequests* repairs,
                           DependencyRequests* dependencies, QObject* parent)
    : BusObject("/com/lumora/Manager/Repair", ":/wire/com.lumora.Manager.Repair.xml", parent) {
    handle("describe", [offers](const QVariantList& arguments, const Reply& reply) {
        offers->describe(arguments[0].toString(), arguments[1].toString(), arguments[2].toStringList(),
                         reply);
    });
    handle("takeFile", [offers](const QVariantList& arguments, const Reply& reply) {
        offers->takeFile(arguments[0].toString(), arguments[1].toString(), arguments[2].toString(), reply);
    });
    handle("runnersFor32Bit",
           [offers](const QVariantList&, const Reply& reply) { reply(offers->runnersFor32Bit()); });
    handleOneText<DependencyRequests>(this, dependencies,
                                      {{"queuedDependencies", &DependencyRequests::queue}});
    handleTwoTexts<DependencyRequests>(this, dependencies,
                                       {{"cancelDependency", &DependencyRequests::cancelOne}});
    handleOneText<BottleRepairRequests>(this, repairs,
                                        {{"damage", &BottleRepairRequests::damage},
                                         {"renewBottle", &BottleRepairRequests::renewBottle},
                                         {"cancelRenewal", &BottleRepairRequests::cancelRenewal}});
}
