#include "bottleservice/wire/DesktopMethods.h"

#include "bottleservice/requests/DesktopRequests.h"
#include "bottleservice/wire/TextMethods.h"

void addDesktopMethods(BusObject* object, DesktopRequests* requests) {
    handleTwoTexts<DesktopRequests>(object, requests,
                                    {{"createDesktopEntry", &DesktopRequests::createDesktopEntry}});
    object->handle("exportFileAssociations", [requests](const QVariantList& arguments, const Reply& reply) {
        requests->exportFileAssociations(arguments[0].toString(), arguments[1].toStringList(), reply);
    });
}
