#pragma once

#include <QJsonObject>
#include <QString>

namespace StoreServer {

/// The signature of reports. It lies in the body itself, under "sign", and covers those of the other fields
/// that are texts, numbers or arrays and not empty.
namespace ReportSignature {

/// Keys and values one after the other in the order of the keys. A number has 6 digits, from a million on
/// with an exponent; an array is compact JSON.
QString signedText(const QJsonObject& body);

/// Whether "sign" is the SHA-256, in hexadecimal digits, of the signed text and the secret. Takes as long for
/// a wrong signature as for the right one.
bool isGood(const QJsonObject& body, const QString& secret);

/// The text that hexadecimal digits stand for, which is how clients are given the secret: at least 16 bytes,
/// none of them 0. Empty for anything else.
QString secretOf(const QByteArray& hex);

}  // namespace ReportSignature

}  // namespace StoreServer
