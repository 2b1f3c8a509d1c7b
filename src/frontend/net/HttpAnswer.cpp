#include "net/HttpAnswer.h"

#include <QJsonDocument>

QJsonObject HttpAnswer::readJson() {
    if (error != Error::None)
        return {};
    QJsonParseError parse;
    const QJsonDocument document = QJsonDocument::fromJson(body, &parse);
    if (document.isObject())
        return document.object();
    error = Error::Json;
    errorText = QStringLiteral("the answer is no JSON object: %1")
                    .arg(document.isNull()
                             ? QStringLiteral("%1 at byte %2").arg(parse.errorString()).arg(parse.offset)
                             : QStringLiteral("it is an array"));
    return {};
}
