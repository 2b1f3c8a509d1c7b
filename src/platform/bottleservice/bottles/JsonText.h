#pragma once

#include <QJsonDocument>
#include <QString>

/// JSON as the bus transports it.
namespace JsonText {

/// An object or an array on one line.
template <class Json>
QString compact(const Json& json) {
    return QString::fromUtf8(QJsonDocument(json).toJson(QJsonDocument::Compact));
}

}  // namespace JsonText
