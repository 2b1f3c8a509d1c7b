#include "bottleservice/wire/BackupObject.h"

#include "bottleservice/bottles/JsonText.h"
#include "bottleservice/requests/BackupRequests.h"
#include "bottleservice/wire/ResultObject.h"
#include "bottleservice/wire/TextMethods.h"

namespace {

/// A failure of the work itself is a result; an error is only for calls that were not understood.
Reply withResult(const Reply& reply) {
    return [reply](const Answer& answer) {
        const bool isResult = answer.fault == Answer::Fault::Failed || answer.fault == Answer::Fault::Busy;
        reply(isResult ? Answer::of(JsonText::compact(resultOf(answer))) : answer);
    };
}

}  // namespace

BackupObject::BackupObject(BackupRequests* requests, QObject* parent)
    : BusObject("/com/lumora/Manager/Backup", ":/wire/com.lumora.Manager.Backup.xml", parent) {
    handle("exportBottle", [requests](const QVariantList& arguments, const Reply& reply) {
        requests->exportBottle(arguments[0].toString(), arguments[1].toString(), withResult(reply));
    });
    handle("importBottle", [requests](const QVariantList& arguments, const Reply& reply) {
        requests->importBottle(arguments[0].toString(), arguments[1].toString(), withResult(reply));
    });
    handle("describeBackup", [requests](const QVariantList& arguments, const Reply& reply) {
        requests->describeBackup(arguments[0].toString(), withResult(reply));
    });
    handle("importPortable", [requests](const QVariantList& arguments, const Reply& reply) {
        requests->importPortable(arguments[0].toString(), withResult(reply));
    });
    handleOneText<BackupRequests>(this, requests, {{"cancelBottleCopy", &BackupRequests::cancelBottleCopy}});
    connect(requests, &BackupRequests::progress, this,
            [this](const QString& file, qint64 done, qint64 total) {
                emitSignal("copyProgress", {file, done, total});
            });
}
