#include "feedback/client/AliyunGreenApi.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkRequest>
#include <QTimer>
#include <QUrl>
#include <QUuid>

#include "feedback/client/FeedbackDeployment.h"
#include "feedback/client/RpcSignature.h"
#include "net/HttpRequest.h"

namespace {

/// In the order in which they are sent, without the signature.
QList<QPair<QString, QString>> parametersOf(const QString& text, const QString& accessKeyId) {
    const QJsonObject content{{"content", text}};
    return {{"Action", "TextModerationPlus"},
            {"Format", "JSON"},
            {"Version", "2022-03-02"},
            {"AccessKeyId", accessKeyId},
            {"SignatureMethod", "HMAC-SHA1"},
            {"SignatureVersion", "1.0"},
            {"SignatureNonce", QUuid::createUuid().toString(QUuid::WithoutBraces)},
            {"Timestamp", QDateTime::currentDateTimeUtc().toString("yyyy-MM-ddTHH:mm:ssZ")},
            {"ServiceParameters", QString::fromUtf8(QJsonDocument(content).toJson(QJsonDocument::Compact))},
            {"Service", "nickname_detection_pro"}};
}

}  // namespace

AliyunGreenApi::AliyunGreenApi(const QString& accessKeyId, const QString& accessKeySecret, QObject* parent)
    : QObject(parent),
      m_endpoint(FeedbackDeployment::moderationUrl()),
      m_accessKeyId(accessKeyId),
      m_accessKeySecret(accessKeySecret),
      m_network(new QNetworkAccessManager(this)),
      m_checks(std::make_unique<QObject>()) {}

AliyunGreenApi::AliyunGreenApi(QObject* parent)
    : AliyunGreenApi(FeedbackDeployment::decoded(FeedbackDeployment::moderationKeyId()),
                     FeedbackDeployment::decoded(FeedbackDeployment::moderationKeySecret()), parent) {}

void AliyunGreenApi::checkContent(const QString& text) {
    if (m_endpoint.isEmpty() || m_accessKeyId.isEmpty() || m_accessKeySecret.isEmpty()) {
        QTimer::singleShot(0, m_checks.get(), [this] {
            Q_EMIT errorOccurred(QStringLiteral("this build has no account for text moderation"));
        });
        return;
    }
    QByteArray query;
    RpcSignature::Parameters signedOnes;
    for (const auto& [name, value] : parametersOf(text, m_accessKeyId)) {
        signedOnes.insert(name, value);
        query += RpcSignature::encoded(name) + '=' + RpcSignature::encoded(value) + '&';
    }
    const QByteArray signature = RpcSignature::sign(signedOnes, m_accessKeySecret);
    // QUrlQuery would leave the plus signs of the signature, which a server reads as blanks.
    query += "Signature=" + RpcSignature::encoded(QString::fromLatin1(signature));
    QUrl url(m_endpoint);
    url.setQuery(QString::fromLatin1(query), QUrl::StrictMode);

    QNetworkRequest request(url);
    request.setRawHeader("Content-Type", "application/x-www-form-urlencoded");
    request.setRawHeader("Accept-Charset", "utf-8");
    auto* http = new HttpRequest(m_network, m_checks.get());
    HttpRequest::Limits limits;
    limits.wholeMs = limits.silenceMs = 0;
    http->setLimits(limits);
    connect(http, &HttpRequest::finished, this, [this, http](const HttpAnswer& answer) {
        http->deleteLater();
        QString body = QString::fromUtf8(answer.body);
        if (answer.error == HttpAnswer::Error::None) {
            Q_EMIT replyOccurred(body);
            return;
        }
        body.replace(m_accessKeyId, "***");  // a refused signature is answered with what was signed
        Q_EMIT errorOccurred(QStringLiteral("Error: %1\nResponse: %2").arg(answer.errorText, body));
    });
    http->send("POST", request);
}

void AliyunGreenApi::abort() {
    m_checks = std::make_unique<QObject>();
}
