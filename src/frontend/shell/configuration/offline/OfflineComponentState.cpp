#include "shell/configuration/offline/OfflineComponentState.h"

#include "backend/ServiceErrorText.h"

using Transfer = OfflineDependency::Transfer;

OfflineComponentState OfflineComponentState::of(Transfer transfer, const QJsonObject& info) {
    const QString status = info.value("status").toString();
    if (status == "downloading")
        return {Running, tr("Downloading %1").arg(info.value("progress").toString()), {}};
    if (status == "running")
        return started(transfer);
    if (status == "ok")
        return {Done, transfer == Transfer::Export ? tr("Exported") : tr("Imported"), {}};
    return status == "failed" ? failed(ServiceErrorText::of(info)) : OfflineComponentState();
}

OfflineComponentState OfflineComponentState::started(Transfer transfer) {
    return {Running, transfer == Transfer::Export ? tr("Exporting") : tr("Importing"), {}};
}

OfflineComponentState OfflineComponentState::failed(const QString& reason) {
    return {Failed, tr("Failed"), reason};
}
