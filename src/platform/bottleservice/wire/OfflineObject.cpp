#include "bottleservice/wire/OfflineObject.h"

#include <QJsonArray>

#include "bottleservice/bottles/JsonText.h"
#include "bottleservice/requests/OfflineRequests.h"

using JsonText::compact;

OfflineObject::OfflineObject(OfflineRequests* requests, QObject* parent)
    : BusObject("/com/lumora/Manager/OfflineDependency", ":/wire/com.lumora.Manager.OfflineDependency.xml",
                parent) {
    handle("exportDeps", [requests](const QVariantList& arguments, const Reply& reply) {
        requests->exportDeps(arguments[0].toStringList(), arguments[1].toString(), reply);
    });
    handle("importDeps", [requests](const QVariantList& arguments, const Reply& reply) {
        requests->importDeps(arguments[0].toString(), arguments[1].toStringList(), {}, reply);
    });
    handle("importChosenDeps", [requests](const QVariantList& arguments, const Reply& reply) {
        requests->importDeps(arguments[0].toString(), arguments[1].toStringList(),
                             arguments[2].toStringList(), reply);
    });
    handle("cancelExport", [requests](const QVariantList&, const Reply& reply) {
        requests->cancelExport();
        reply(Answer::of());
    });
    handle("cancelImport", [requests](const QVariantList&, const Reply& reply) {
        requests->cancelImport();
        reply(Answer::of());
    });
    handle("checkDeps", [requests](const QVariantList& arguments, const Reply& reply) {
        requests->check(arguments[0].toStringList(), reply);
    });
    handle("getDependencies", [requests](const QVariantList& arguments, const Reply& reply) {
        reply(
            Answer::of(compact(QJsonArray::fromStringList(requests->dependencies(arguments[0].toString())))));
    });
    handle("isExporting", [requests](const QVariantList&, const Reply& reply) {
        reply(Answer::yesOrNo(requests->isExporting()));
    });
    handle("isImporting", [requests](const QVariantList&, const Reply& reply) {
        reply(Answer::yesOrNo(requests->isImporting()));
    });
    handle("exportingStatus", [requests](const QVariantList&, const Reply& reply) {
        reply(Answer::of(compact(requests->exportingStatus())));
    });
    handle("importingStatus", [requests](const QVariantList&, const Reply& reply) {
        reply(Answer::of(compact(requests->importingStatus())));
    });
    connect(requests, &OfflineRequests::progress, this, [this](const QString& type, const QJsonObject& info) {
        emitSignal("notifyProgress", {type, compact(info)});
    });
}
