#include "bottleservice/wire/ProgramMethods.h"

#include "bottleservice/requests/ProgramRequests.h"
#include "bottleservice/wire/TextMethods.h"

void addProgramMethods(BusObject* object, ProgramRequests* requests) {
    object->handle("listAllPrograms",
                   [requests](const QVariantList&, const Reply& reply) { requests->listAllPrograms(reply); });
    object->handle("scanApplicationLinks", [requests](const QVariantList& arguments, const Reply& reply) {
        requests->scanApplicationLinks(arguments[0].toString(), arguments[1].toLongLong(), reply);
    });
    handleOneText<ProgramRequests>(object, requests,
                                   {{"dumpManifest", &ProgramRequests::dumpManifest},
                                    {"listBottlesAllPrograms", &ProgramRequests::listBottlesAllPrograms},
                                    {"getExternalProgramsDllList", &ProgramRequests::listDlls},
                                    {"getExternalProgramsUpdateExes", &ProgramRequests::listUpdaters}});
    handleTwoTexts<ProgramRequests>(object, requests,
                                    {{"updateExternalProgram", &ProgramRequests::updateExternalProgram},
                                     {"removeExternalProgram", &ProgramRequests::removeExternalProgram}});
    QObject::connect(requests, &ProgramRequests::programDeleted, object,
                     [object](const QString& bottle, const QString& id) {
                         object->emitSignal("program_deleted", {bottle, id});
                     });
    QObject::connect(requests, &ProgramRequests::programAdded, object,
                     [object](const QString& bottle, const QString& id, const QString& record) {
                         object->emitSignal("program_added", {bottle, id, record});
                     });
    QObject::connect(requests, &ProgramRequests::programUpdated, object,
                     [object](const QString& bottle, const QString& id, const QString& record) {
                         object->emitSignal("program_updated", {bottle, id, record});
                     });
}
