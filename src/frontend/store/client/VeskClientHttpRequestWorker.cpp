#include "store/client/VeskClientHttpRequestWorker.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QNetworkAccessManager>
#include <QNetworkRequest>
#include <algorithm>

#include "net/HttpRequest.h"
#include "store/client/LocalStore.h"
#include "store/client/VeskClientAnswerFiles.h"
#include "store/client/VeskClientHttpRequestInput.h"
#include "store/client/VeskClientRequestBody.h"

namespace OpenAPI {

namespace {

void setHeaders(const VeskClientHttpRequestInput& input, QNetworkRequest* request) {
    request->setHeader(QNetworkRequest::UserAgentHeader, "OpenAPI-Generator/1.0.0/cpp-qt");
    QStringList names = input.header_order;
    for (auto header = input.headers.begin(); header != input.headers.end(); ++header) {
        if (!names.contains(header.key()))
            names += header.key();
    }
    for (const QString& name : qAsConst(names)) {
        const QByteArray value = input.headers.value(name).toUtf8();
        // A null value would take the header away, an empty one is sent.
        if (input.headers.contains(name))
            request->setRawHeader(name.toUtf8(), value.isNull() ? QByteArray("") : value);
    }
}

bool isError(const HttpAnswer& answer) {
    // A status alone is none, unless the network layer calls it one.
    return answer.error != HttpAnswer::Error::None &&
           (answer.error != HttpAnswer::Error::Status || answer.networkError != QNetworkReply::NoError);
}

}  // namespace

VeskClientHttpRequestWorker::VeskClientHttpRequestWorker(QObject* parent, QNetworkAccessManager* manager)
    : QObject(parent), m_manager(manager ? manager : new QNetworkAccessManager(this)) {}

void VeskClientHttpRequestWorker::execute(const VeskClientHttpRequestInput& input) {
    if (!LocalStore::isMeant(input.url_str)) {
        send(input, _timeOut);
        return;
    }
    QElapsedTimer time;
    time.start();
    LocalStore::resolve(input.url_str, this, [this, input, time](const QString& url) {
        if (url.isEmpty()) {
            error_type = QNetworkReply::HostNotFoundError;
            error_str = QStringLiteral("The local store does not answer");
            Q_EMIT on_execution_finished(this);
            return;
        }
        auto found = input;
        found.url_str = url;
        send(found, _timeOut > 0 ? std::max(1, _timeOut - int(time.elapsed())) : 0);
    });
}

void VeskClientHttpRequestWorker::send(const VeskClientHttpRequestInput& input, int timeOutMs) {
    VeskClientRequestBody made = VeskClientRequestBody::of(input);
    QNetworkRequest request((QUrl(made.url)));
    setHeaders(input, &request);
    if (!made.contentType.isEmpty() && !request.hasRawHeader("Content-Type"))
        request.setHeader(QNetworkRequest::ContentTypeHeader, made.contentType);
    if (isRequestCompressionEnabled)
        made.body.clear();  // nothing here packs, and the server must not take plain bytes for packed ones
    request.setRawHeader("Content-Encoding", isRequestCompressionEnabled ? "gzip" : "identity");
    request.setRawHeader("Accept-Encoding", isResponseCompressionEnabled ? "gzip" : "identity");
    if (!made.body.isEmpty())
        qDebug() << "got a request body";

    m_request = new HttpRequest(m_manager, this);
    HttpRequest::Limits limits;
    limits.wholeMs = timeOutMs;
    limits.silenceMs = 0;
    limits.answerBytes = MaxAnswerBytes;
    m_request->setLimits(limits);
    connect(m_request, &HttpRequest::downloadProgress, this, &VeskClientHttpRequestWorker::downloadProgress);
    connect(m_request, &HttpRequest::finished, this, &VeskClientHttpRequestWorker::onFinished);
    m_request->send(input.http_method.toLatin1(), request, made.body);
}

void VeskClientHttpRequestWorker::onFinished(const HttpAnswer& answer) {
    httpResponse = answer.status;
    for (const auto& header : answer.headers)
        headers.insert(QString::fromLatin1(header.first), QString::fromUtf8(header.second));
    if (answer.error == HttpAnswer::Error::TimedOut) {
        error_type = QNetworkReply::TimeoutError;
        error_str = QStringLiteral("Timed out waiting for response");
    } else {
        takeBody(answer.body);
        if (isError(answer)) {
            const bool isKnown = answer.networkError != QNetworkReply::NoError;
            error_type = isKnown ? answer.networkError : QNetworkReply::UnknownNetworkError;
            error_str = answer.errorText;
        }
    }
    Q_EMIT on_execution_finished(this);
}

void VeskClientHttpRequestWorker::takeBody(const QByteArray& body) {
    const auto header = [this](const char* name) {
        for (auto it = headers.begin(); it != headers.end(); ++it) {
            if (it.key().compare(QLatin1String(name), Qt::CaseInsensitive) == 0)
                return it.value().toUtf8();
        }
        return QByteArray();
    };
    VeskClientAnswerFiles taken(workingDirectory);
    if (taken.take(header("Content-Type"), header("Content-Disposition"), body)) {
        files = taken.files();
        multiPartFields = taken.fields();
        return;
    }
    const QByteArrayList encodings = header("Content-Encoding").toLower().split(';').first().split(',');
    const bool isPacked = std::any_of(encodings.begin(), encodings.end(), [](const QByteArray& encoding) {
        return encoding.trimmed() == "gzip" || encoding.trimmed() == "deflate";
    });
    if (!isPacked)  // it was asked for a plain one
        response = body;
}

}  // namespace OpenAPI
