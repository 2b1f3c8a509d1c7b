#include "feedback/client/RpcSignature.h"

#include <QCryptographicHash>
#include <QMessageAuthenticationCode>
#include <QUrl>

namespace RpcSignature {

QByteArray encoded(const QString& text) {
    return QUrl::toPercentEncoding(text, "-_.~");
}

QByteArray query(const Parameters& parameters) {
    QByteArray text;
    for (auto it = parameters.begin(); it != parameters.end(); ++it)
        text += (text.isEmpty() ? "" : "&") + encoded(it.key()) + '=' + encoded(it.value());
    return text;
}

QByteArray stringToSign(const Parameters& parameters) {
    return "POST&" + encoded("/") + '&' + encoded(QString::fromLatin1(query(parameters)));
}

QByteArray sign(const Parameters& parameters, const QString& accessKeySecret) {
    return QMessageAuthenticationCode::hash(stringToSign(parameters), accessKeySecret.toUtf8() + '&',
                                            QCryptographicHash::Sha1)
        .toBase64();
}

}  // namespace RpcSignature
