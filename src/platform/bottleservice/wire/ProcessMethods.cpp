#include "bottleservice/wire/ProcessMethods.h"

#include "bottleservice/requests/ProcessRequests.h"
#include "bottleservice/wire/TextMethods.h"

void addProcessMethods(BusObject* object, ProcessRequests* requests) {
    handleOneText<ProcessRequests>(object, requests, {{"killWineServer", &ProcessRequests::killWineServer}});
    handleTwoTexts<ProcessRequests>(
        object, requests,
        {{"killProgram", &ProcessRequests::killProgram}, {"run_command", &ProcessRequests::runCommand}});
    QObject::connect(
        requests, &ProcessRequests::programExited, object,
        [object](const QString&, const QString& id) { object->emitSignal("program_exited", {id}); });
}
