#include "feedback/client/ReportSignature.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMap>
#include <QRandomGenerator64>

namespace {

constexpr int NounceLength = 8;
const QLatin1String SignKey("sign");

QString textOf(const QJsonValue& value) {
    switch (value.type()) {
        case QJsonValue::String:
            return value.toString();
        case QJsonValue::Double:
            return QString::number(value.toDouble(), 'g', 6);
        case QJsonValue::Array:
            return QString::fromUtf8(QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact));
        default:
            return {};
    }
}

QString makeNounce() {
    const QLatin1String letters("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789");
    QString nounce;
    for (int i = 0; i < NounceLength; ++i)
        nounce += letters[QRandomGenerator64::global()->bounded(letters.size())];
    return nounce;
}

}  // namespace

namespace ReportSignature {

QString textToSign(const QJsonObject& body) {
    QMap<QString, QString> fields;
    for (auto it = body.begin(); it != body.end(); ++it)
        fields.insert(it.key(), textOf(it.value()));
    QString text;
    for (auto it = fields.begin(); it != fields.end(); ++it) {
        if (it.key() != SignKey && !it.value().isEmpty())
            text += it.key() + it.value();
    }
    return text;
}

QJsonObject sign(QJsonObject body, const QString& secret, qint64 timeMs, const QString& nounce) {
    body.insert("time", QString::number(timeMs));
    body.insert("nounce", nounce);
    const QByteArray hash =
        QCryptographicHash::hash((textToSign(body) + secret).toUtf8(), QCryptographicHash::Sha256);
    body.insert(SignKey, QString::fromLatin1(hash.toHex()));
    return body;
}

QJsonObject sign(const QJsonObject& body, const QString& secret) {
    return sign(body, secret, QDateTime::currentMSecsSinceEpoch(), makeNounce());
}

}  // namespace ReportSignature
