#pragma once

#include <QLoggingCategory>
#include <QObject>

#include "store/client/VeskClientHttpRequestWorker.h"

namespace VeskHttpClient {

Q_DECLARE_LOGGING_CATEGORY(httpLog)

/// Writes every answer to the log category common.veskhttp while that has debug lines on, else nothing. Finds
/// the signals of an API object by their names, so that an operation needs no line here.
class VeskClientApiLogger : public QObject {
    Q_OBJECT
public:
    VeskClientApiLogger(QObject* api, QObject* parent);

    static bool isEnabled();

private Q_SLOTS:
    void logResponse(OpenAPI::VeskClientHttpRequestWorker* worker);
};

}  // namespace VeskHttpClient
