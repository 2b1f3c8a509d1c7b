#include "net/HttpRequest.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkRequest>
#include <memory>

#include "net/LoggedAddress.h"

using Error = HttpAnswer::Error;

namespace {

constexpr qint64 MaximumBuffer = 1 << 20;  // of what has come and was not yet read
constexpr int LongestPhrase = 100;

/// The network layer's own text would contain the whole address.
QString statusText(const QNetworkReply& reply, int status) {
    const QString phrase = reply.attribute(QNetworkRequest::HttpReasonPhraseAttribute).toString();
    return QStringLiteral("the server's status is %1 %2")
        .arg(status)
        .arg(phrase.left(LongestPhrase).simplified())
        .trimmed();
}

QString errorTextOf(const QNetworkReply& reply) {
    const QString text = reply.errorString();
    return text.contains("://") ? QStringLiteral("network error %1").arg(reply.error()) : text;
}

}  // namespace

HttpRequest::HttpRequest(QNetworkAccessManager* manager, QObject* parent)
    : QObject(parent), m_manager(manager) {
    m_wholeTimer.setSingleShot(true);
    m_silenceTimer.setSingleShot(true);
    connect(&m_wholeTimer, &QTimer::timeout, this, [this] {
        finish(Error::TimedOut, QStringLiteral("not answered within %1 ms").arg(m_limits.wholeMs));
    });
    connect(&m_silenceTimer, &QTimer::timeout, this, [this] {
        finish(Error::TimedOut, QStringLiteral("nothing sent or received for %1 ms").arg(m_limits.silenceMs));
    });
}

HttpRequest::~HttpRequest() {
    closeReply();
}

void HttpRequest::send(const QByteArray& verb, const QNetworkRequest& request, const QByteArray& body) {
    auto* buffer = new QBuffer;
    buffer->setData(body);
    buffer->open(QIODevice::ReadOnly);
    start(verb, request, buffer);
}

void HttpRequest::sendFile(const QByteArray& verb, const QNetworkRequest& request, const QString& path) {
    auto file = std::make_unique<QFile>(path);
    if (!QFileInfo(path).isFile())  // opening a pipe would wait for its writer
        finishLater(Error::File, QStringLiteral("%1 is no file").arg(path));
    else if (!file->open(QIODevice::ReadOnly))
        finishLater(Error::File, QStringLiteral("%1: %2").arg(path, file->errorString()));
    else
        start(verb, request, file.release());
}

void HttpRequest::start(const QByteArray& verb, QNetworkRequest request, QIODevice* body) {
    body->setParent(this);
    const QString scheme = request.url().scheme();
    if (scheme != QLatin1String("http") && scheme != QLatin1String("https")) {
        // The network layer would read files of this machine as well.
        finishLater(Error::Network, QStringLiteral("no web address: %1").arg(loggedAddress(request.url())));
        return;
    }
    if (!request.hasRawHeader("Accept-Encoding"))
        request.setRawHeader("Accept-Encoding", "identity");
    const bool hasBody = verb != "GET" && verb != "HEAD";
    const auto policy = QNetworkRequest::RedirectPolicyAttribute;
    if (hasBody)
        request.setAttribute(policy, QNetworkRequest::ManualRedirectPolicy);
    else if (!request.attribute(policy).isValid())
        request.setAttribute(policy, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setMaximumRedirectsAllowed(MaxRedirects);
    if (verb == "GET")
        m_reply = m_manager->get(request);
    else if (verb == "HEAD")
        m_reply = m_manager->head(request);
    else
        m_reply = m_manager->sendCustomRequest(request, verb, body);
    body->setParent(m_reply);
    connectReply();
    if (m_limits.wholeMs > 0)
        m_wholeTimer.start(m_limits.wholeMs);
    noteActivity();
}

void HttpRequest::connectReply() {
    m_reply->setReadBufferSize(m_target ? MaximumBuffer : m_limits.answerBytes + 1);
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &HttpRequest::noteActivity);
    connect(m_reply, &QNetworkReply::readyRead, this, &HttpRequest::readAvailable);
    connect(m_reply, &QNetworkReply::finished, this, &HttpRequest::readEnd);
    connect(m_reply, &QNetworkReply::uploadProgress, this, &HttpRequest::noteActivity);
    connect(m_reply, &QNetworkReply::uploadProgress, this, [this](qint64 sent, qint64 total) {
        if (total != 0)  // the network layer ends each upload with zeros
            Q_EMIT uploadProgress(sent, total);
    });
    connect(m_reply, &QObject::destroyed, this,
            [this] { finish(Error::Aborted, QStringLiteral("the network manager is gone")); });
}

void HttpRequest::noteActivity() {
    if (m_limits.silenceMs > 0)
        m_silenceTimer.start(m_limits.silenceMs);
}

void HttpRequest::readAvailable() {
    noteActivity();
    const QByteArray bytes =
        m_reply->read(qMin(m_limits.answerBytes + 1 - m_received, m_reply->bytesAvailable()));
    m_received += bytes.size();
    if (m_received > m_limits.answerBytes) {
        m_answer.body.clear();
        finish(Error::TooLarge,
               QStringLiteral("the answer is larger than %1 bytes").arg(m_limits.answerBytes));
    } else if (!bytes.isEmpty() && take(bytes)) {
        const QVariant total = m_reply->header(QNetworkRequest::ContentLengthHeader);
        Q_EMIT downloadProgress(m_received, total.isValid() ? total.toLongLong() : -1);
    }
}

bool HttpRequest::take(const QByteArray& bytes) {
    if (!m_target) {
        m_answer.body += bytes;
    } else if (m_target->write(bytes) != bytes.size()) {
        finish(Error::File, m_target->errorString());
        return false;
    }
    return true;
}

void HttpRequest::readEnd() {
    readAvailable();
    if (m_isFinished)
        return;
    m_answer.status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    m_answer.headers = m_reply->rawHeaderPairs();
    m_answer.networkError = m_reply->error();
    const bool isSuccess = m_answer.status >= 200 && m_answer.status < 300;
    const QString errorText = errorTextOf(*m_reply);
    // The network layer does not always call it an error when the connection breaks off.
    const qint64 announced = m_reply->operation() == QNetworkAccessManager::HeadOperation
                                 ? 0
                                 : m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong();
    const bool isCut = m_answer.networkError == QNetworkReply::NoError && m_received < announced;
    if (isCut)
        m_answer.networkError = QNetworkReply::RemoteHostClosedError;
    const bool isRedirect = m_answer.status >= 300 && m_answer.status < 400;
    if (isRedirect && m_answer.networkError != QNetworkReply::NoError)
        finish(Error::Redirect, errorText);
    else if (m_answer.networkError != QNetworkReply::NoError && (isSuccess || m_answer.status == 0))
        finish(Error::Network, isCut ? QStringLiteral("the connection broke off") : errorText);
    else if (!isSuccess)
        finish(Error::Status, statusText(*m_reply, m_answer.status));
    else
        finish(Error::None, QString());
}

void HttpRequest::abort() {
    finish(Error::Aborted, QStringLiteral("aborted"));
}

void HttpRequest::closeReply() {
    if (!m_reply)
        return;
    m_reply->disconnect(this);
    m_reply->abort();
    m_reply->deleteLater();
}

void HttpRequest::finishLater(Error error, const QString& errorText) {
    QTimer::singleShot(0, this, [this, error, errorText] { finish(error, errorText); });
}

void HttpRequest::finish(Error error, const QString& errorText) {
    if (m_isFinished)
        return;
    m_isFinished = true;
    m_wholeTimer.stop();
    m_silenceTimer.stop();
    closeReply();
    m_answer.error = error;
    m_answer.errorText = errorText;
    if (error == Error::TimedOut)
        m_answer.networkError = QNetworkReply::TimeoutError;
    else if (error == Error::Aborted)
        m_answer.networkError = QNetworkReply::OperationCanceledError;
    Q_EMIT finished(m_answer);
}
