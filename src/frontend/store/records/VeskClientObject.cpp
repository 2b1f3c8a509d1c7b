#include "store/records/VeskClientObject.h"

#include <QJsonDocument>

namespace OpenAPI {

VeskClientObject::VeskClientObject(const QString& json) {
    fromJson(json);
}

QJsonObject VeskClientObject::asJsonObject() const {
    return m_object;
}

QString VeskClientObject::asJson() const {
    return QString::fromUtf8(QJsonDocument(asJsonObject()).toJson());
}

void VeskClientObject::fromJson(const QString& json) {
    fromJsonObject(QJsonDocument::fromJson(json.toUtf8()).object());
}

void VeskClientObject::fromJsonObject(const QJsonObject& json) {
    m_object = json;
}

bool VeskClientObject::isSet() const {
    return !m_object.isEmpty();
}

bool VeskClientObject::isValid() const {
    return true;
}

}  // namespace OpenAPI
