#include "storeserver/reports/ReportSignature.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>

#include "storeserver/reports/SameBytes.h"

namespace StoreServer {

namespace ReportSignature {

namespace {

constexpr int NumberDigits = 6;
constexpr int LeastSecretBytes = 16;
const QString SignKey = "sign";

QString textOf(const QJsonValue& value) {
    if (value.isString())
        return value.toString();
    if (value.isDouble())
        return QString::number(value.toDouble(), 'g', NumberDigits);
    if (value.isArray())
        return QString::fromUtf8(QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact));
    return {};
}

}  // namespace

QString signedText(const QJsonObject& body) {
    QStringList keys = body.keys();
    keys.sort();
    QString text;
    for (const QString& key : qAsConst(keys)) {
        const QString value = textOf(body.value(key));
        if (key != SignKey && !value.isEmpty())
            text += key + value;
    }
    return text;
}

bool isGood(const QJsonObject& body, const QString& secret) {
    const QByteArray expected =
        QCryptographicHash::hash((signedText(body) + secret).toUtf8(), QCryptographicHash::Sha256).toHex();
    return !secret.isEmpty() && areSameBytes(body.value(SignKey).toString().toUtf8(), expected);
}

QString secretOf(const QByteArray& hex) {
    const QByteArray bytes = QByteArray::fromHex(hex);
    const bool isGood =
        bytes.toHex() == hex.toLower() && bytes.size() >= LeastSecretBytes && !bytes.contains('\0');
    return isGood ? QString::fromUtf8(bytes.constData(), bytes.size()) : QString();
}

}  // namespace ReportSignature

}  // namespace StoreServer
