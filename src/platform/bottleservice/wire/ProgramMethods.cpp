#include "bottleservice/wire/ProgramMethods.h"

#include "bottleservice/ProgramRequests.h"
#include "bottleservice/wire/BusObject.h"

void addProgramMethods(BusObject* object, ProgramRequests* requests) {
    object->handle("listAllPrograms",
                   [requests](const QVariantList&, const Reply& reply) { requests->listAllPrograms(reply); });
    object->handle("scanApplicationLinks", [requests](const QVariantList& arguments, const Reply& reply) {
        requests->scanApplicationLinks(arguments[0].toString(), arguments[1].toLongLong(), reply);
    });
    using OneText = void (ProgramRequests::*)(const QString&, const Reply&);
    const std::pair<const char*, OneText> lists[] = {
        {"listBottlesAllPrograms", &ProgramRequests::listBottlesAllPrograms},
        {"getExternalProgramsDllList", &ProgramRequests::listDlls},
        {"getExternalProgramsUpdateExes", &ProgramRequests::listUpdaters},
    };
    for (const auto& [name, function] : lists) {
        object->handle(name,
                       [requests, function = function](const QVariantList& arguments, const Reply& reply) {
                           (requests->*function)(arguments[0].toString(), reply);
                       });
    }
    using TwoTexts = void (ProgramRequests::*)(const QString&, const QString&, const Reply&);
    const std::pair<const char*, TwoTexts> table[] = {
        {"updateExternalProgram", &ProgramRequests::updateExternalProgram},
        {"removeExternalProgram", &ProgramRequests::removeExternalProgram},
    };
    for (const auto& [name, function] : table) {
        object->handle(name,
                       [requests, function = function](const QVariantList& arguments, const Reply& reply) {
                           (requests->*function)(arguments[0].toString(), arguments[1].toString(), reply);
                       });
    }
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
