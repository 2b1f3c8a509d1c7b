#include "bottleservice/wire/CleanUpObject.h"

#include "bottleservice/requests/CleanUpRequests.h"
#include "bottleservice/wire/TextMethods.h"

CleanUpObject::CleanUpObject(CleanUpRequests* requests, QObject* parent)
    : BusObject("/com/lumora/Manager/CleanUp", ":/wire/com.lumora.Manager.CleanUp.xml", parent) {
    handle("bottlesOfRemovedPackages", [requests](const QVariantList&, const Reply& reply) {
        requests->bottlesOfRemovedPackages(reply);
    });
    handleOneText<CleanUpRequests>(this, requests, {{"keepBottle", &CleanUpRequests::keepBottle}});
    handleTwoTexts<CleanUpRequests>(this, requests, {{"deleteIfUnused", &CleanUpRequests::deleteIfUnused}});
}
