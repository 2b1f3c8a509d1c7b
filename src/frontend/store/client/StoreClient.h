#pragma once

#include <QMap>
#include <QString>

class QObject;

namespace OpenAPI {
class VeskClientDefaultApi;
}

/// A client of the store, ready for requests: whoever asks takes a fresh one, connects to its signals and
/// lets it delete itself at allPendingRequestsCompleted. Without an address the one of the settings is used,
/// which logs a warning, or else the one of the build, or else the store on this machine is started. A
/// request may take 20 s.
OpenAPI::VeskClientDefaultApi* makeStoreClient(const QString& baseUrl = {}, QObject* parent = nullptr);

/// What each request says of this machine, by header.
const QMap<QString, QString>& storeHeaders();
