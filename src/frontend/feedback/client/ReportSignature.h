#pragma once

#include <QJsonObject>
#include <QString>

/// The signature of the report service. It lies in the body itself and covers those of its fields that are
/// texts, numbers or arrays and not empty.
namespace ReportSignature {

/// Keys and values one after the other in the order of the keys. A number is written with 6 digits, from a
/// million on with an exponent; an array as compact JSON.
QString textToSign(const QJsonObject& body);

/// The body with "time" (milliseconds since 1970), "nounce" and "sign" (SHA-256, hexadecimal).
QJsonObject sign(QJsonObject body, const QString& secret, qint64 timeMs, const QString& nounce);
/// The same with the present time and a random nounce.
QJsonObject sign(const QJsonObject& body, const QString& secret);

}  // namespace ReportSignature
