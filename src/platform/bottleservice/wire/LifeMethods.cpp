#include "bottleservice/wire/LifeMethods.h"

#include "bottleservice/requests/LifeRequests.h"
#include "bottleservice/wire/TextMethods.h"

void addLifeMethods(BusObject* object, LifeRequests* requests) {
    handleOneText<LifeRequests>(object, requests, {{"killWineServer", &LifeRequests::killWineServer}});
    handleTwoTexts<LifeRequests>(
        object, requests,
        {{"killProgram", &LifeRequests::killProgram}, {"run_command", &LifeRequests::runCommand}});
    QObject::connect(
        requests, &LifeRequests::programExited, object,
        [object](const QString&, const QString& id) { object->emitSignal("program_exited", {id}); });
}
