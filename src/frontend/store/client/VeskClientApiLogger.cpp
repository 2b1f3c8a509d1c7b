#include "store/client/VeskClientApiLogger.h"

#include <QMetaMethod>

namespace VeskHttpClient {

Q_LOGGING_CATEGORY(httpLog, "common.veskhttp")

VeskClientApiLogger::VeskClientApiLogger(QObject* api, QObject* parent) : QObject(parent) {
    if (!isEnabled())
        return;
    const int index = metaObject()->indexOfSlot("logResponse(OpenAPI::VeskClientHttpRequestWorker*)");
    if (index < 0) {
        qCDebug(httpLog) << "Cannot find slot logResponse, no logs to response";
        return;
    }
    const QMetaMethod slot = metaObject()->method(index);
    for (int i = 0; i < api->metaObject()->methodCount(); ++i) {
        const QMetaMethod method = api->metaObject()->method(i);
        const bool isFull = method.name().endsWith("SignalFull") || method.name().endsWith("ErrorFull");
        if (method.methodType() == QMetaMethod::Signal && isFull)
            connect(api, method, this, slot);
    }
}

bool VeskClientApiLogger::isEnabled() {
    return httpLog().isDebugEnabled();
}

void VeskClientApiLogger::logResponse(OpenAPI::VeskClientHttpRequestWorker* worker) {
    const QByteArray name = sender()->metaObject()->method(senderSignalIndex()).name();
    qCDebug(httpLog).noquote() << "Response for " + QString::fromLatin1(name) + ":\n" +
                                      QString::fromUtf8(worker->response) + "\n";
    if (!worker->error_str.isEmpty())
        qCDebug(httpLog).noquote() << "Error: " + worker->error_str;
}

}  // namespace VeskHttpClient
