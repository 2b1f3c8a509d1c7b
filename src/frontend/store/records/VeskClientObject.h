#pragma once

#include <QJsonObject>
#include <QString>

namespace OpenAPI {

/// The base of the store's records, and a record of any shape by itself: the JSON object that it was given.
/// Records are plain values without an owner; any thread.
class VeskClientObject {
public:
    VeskClientObject() = default;
    explicit VeskClientObject(const QString& json);
    VeskClientObject(const VeskClientObject&) = default;
    VeskClientObject& operator=(const VeskClientObject&) = default;

    virtual ~VeskClientObject() = default;
    virtual QJsonObject asJsonObject() const;
    virtual QString asJson() const;  ///< indented
    /// A text that is no JSON object reads as an empty one.
    virtual void fromJson(const QString& json);
    virtual void fromJsonObject(const QJsonObject& json);
    virtual bool isSet() const;
    virtual bool isValid() const;

private:
    QJsonObject m_object;
};

}  // namespace OpenAPI
