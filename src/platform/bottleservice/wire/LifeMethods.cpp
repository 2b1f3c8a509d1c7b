#include "bottleservice/wire/LifeMethods.h"

#include "bottleservice/LifeRequests.h"
#include "bottleservice/wire/BusObject.h"

void addLifeMethods(BusObject* object, LifeRequests* requests) {
    object->handle("killWineServer", [requests](const QVariantList& arguments, const Reply& reply) {
        requests->killWineServer(arguments[0].toString(), reply);
    });
    using TwoTexts = void (LifeRequests::*)(const QString&, const QString&, const Reply&);
    const std::pair<const char*, TwoTexts> table[] = {
        {"killProgram", &LifeRequests::killProgram},
        {"run_command", &LifeRequests::runCommand},
    };
    for (const auto& [name, function] : table) {
        object->handle(name,
                       [requests, function = function](const QVariantList& arguments, const Reply& reply) {
                           (requests->*function)(arguments[0].toString(), arguments[1].toString(), reply);
                       });
    }
}
