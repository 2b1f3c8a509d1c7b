#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

/// The signature of Aliyun's RPC services (signature version 1.0, HMAC-SHA1): it covers all parameters of a
/// POST request, sorted by name.
namespace RpcSignature {

using Parameters = QMap<QString, QString>;

/// Everything but letters, digits, "-", "_", "." and "~" as bytes of UTF-8.
QByteArray encoded(const QString& text);
/// "name=value" joined with "&", encoded.
QByteArray query(const Parameters& parameters);
QByteArray stringToSign(const Parameters& parameters);
/// Base64.
QByteArray sign(const Parameters& parameters, const QString& accessKeySecret);

}  // namespace RpcSignature
