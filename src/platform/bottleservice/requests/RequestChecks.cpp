#include "bottleservice/requests/RequestChecks.h"

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/wine/BottleAccess.h"

using Fault = Answer::Fault;

bool RequestChecks::refuseName(const QString& bottle, const Reply& reply) {
    const Reason invalid = BottleName::check(bottle);
    if (!invalid.isEmpty())
        reply(Answer::failure(Fault::InvalidArgs, invalid));
    return !invalid.isEmpty();
}

bool RequestChecks::refuseUnknown(const BottleAccess& bottles, const QString& bottle, const Reply& reply) {
    const Answer check = bottles.check(bottle);
    if (!check.isGood())
        reply(check);
    return !check.isGood();
}

Answer RequestChecks::noProgram(const QString& bottle, const QString& programId) {
    return Answer::failure(Fault::NoSuchProgram,
                           QString("The bottle \"%1\" has no program \"%2\".")
                               .arg(BottleName::shown(bottle), BottleName::shown(programId)));
}
