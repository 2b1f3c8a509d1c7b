#pragma once

#include <QJsonArray>
#include <QList>
#include <QMetaType>
#include <type_traits>

#include "store/records/VeskClientValues.h"

/// The pattern of the store's records. What a record declares is the table of its fields, a macro that calls
/// VALUE(type, field, Field) for each, or FLAG(field, Field) for a bool; VeskClientFieldSort.h is a short
/// one.
///
/// A field `x` has the JSON key "x", getX() (a FLAG, which is a bool, isX()), setX(), is_x_Set() and
/// is_x_Valid(). After fromJson a field is set when its key has a value, and valid when that is of its type.
/// A record is valid when all of its fields are that are neither records nor lists.
namespace OpenAPI {
namespace VeskClientFields {

template <class T>
constexpr bool isRecord = std::is_base_of<VeskClientObject, T>::value;

template <class T>
struct IsList : std::false_type {};
template <class T>
struct IsList<QList<T>> : std::true_type {};

template <class T>
constexpr bool isScalar = !isRecord<T> && !IsList<T>::value;

/// Keeps elements that can't be read, as far as they go; then false.
template <class T>
bool read(QList<T>& list, const QJsonValue& json) {
    list.clear();
    bool isGood = json.isArray();
    const QJsonArray array = json.toArray();
    for (const QJsonValue& element : array) {
        T value{};
        isGood = fromJsonValue(value, element) && isGood;
        list.append(value);
    }
    return isGood;
}

template <class T>
bool read(T& value, const QJsonValue& json) {
    return fromJsonValue(value, json);
}

template <class T>
bool isSet(const T& value, bool wasSet) {
    if constexpr (isRecord<T>)
        return value.isSet();
    else if constexpr (IsList<T>::value)
        return !value.isEmpty();
    else
        return wasSet;
}

template <class T>
QJsonValue write(const T& value) {
    if constexpr (IsList<T>::value) {
        QJsonArray array;
        for (const auto& element : value)
            array.append(write(element));
        return array;
    } else {
        return toJsonValue(value);
    }
}

}  // namespace VeskClientFields
}  // namespace OpenAPI

#define VESK_CLIENT_VALUE(Type, name, Name) \
public:                                     \
    Type get##Name() const {                \
        return m_##name;                    \
    }                                       \
    VESK_CLIENT_FIELD(Type, name, Name)

#define VESK_CLIENT_FLAG(name, Name) \
public:                              \
    bool is##Name() const {          \
        return m_##name;             \
    }                                \
    VESK_CLIENT_FIELD(bool, name, Name)

#define VESK_CLIENT_FIELD(Type, name, Name) \
    void set##Name(const Type& value) {     \
        m_##name = value;                   \
        m_##name##_isSet = true;            \
    }                                       \
    bool is_##name##_Set() const {          \
        return m_##name##_isSet;            \
    }                                       \
    bool is_##name##_Valid() const {        \
        return m_##name##_isValid;          \
    }                                       \
                                            \
private:                                    \
    Type m_##name{};                        \
    bool m_##name##_isSet = false;          \
    bool m_##name##_isValid = false;

// What each operation does with one field.
#define VESK_CLIENT_CLEAR(Type, name, Name) \
    m_##name = Type{};                      \
    m_##name##_isSet = m_##name##_isValid = false;
#define VESK_CLIENT_CLEAR_FLAG(name, Name) VESK_CLIENT_CLEAR(bool, name, Name)
#define VESK_CLIENT_READ(Type, name, Name)                              \
    m_##name##_isValid = VeskClientFields::read(m_##name, json[#name]); \
    m_##name##_isSet = !json[#name].isNull() && !json[#name].isUndefined();
#define VESK_CLIENT_READ_FLAG(name, Name) VESK_CLIENT_READ(bool, name, Name)
#define VESK_CLIENT_WRITE(Type, name, Name)                  \
    if (VeskClientFields::isSet(m_##name, m_##name##_isSet)) \
        json.insert(#name, VeskClientFields::write(m_##name));
#define VESK_CLIENT_WRITE_FLAG(name, Name) VESK_CLIENT_WRITE(bool, name, Name)
#define VESK_CLIENT_ASK_SET(Type, name, Name)                \
    if (VeskClientFields::isSet(m_##name, m_##name##_isSet)) \
        return true;
#define VESK_CLIENT_ASK_SET_FLAG(name, Name) VESK_CLIENT_ASK_SET(bool, name, Name)
#define VESK_CLIENT_ASK_VALID(Type, name, Name)                  \
    if (VeskClientFields::isScalar<Type> && !m_##name##_isValid) \
        return false;
#define VESK_CLIENT_ASK_VALID_FLAG(name, Name) VESK_CLIENT_ASK_VALID(bool, name, Name)

#define VESK_CLIENT_RECORD(Class, FIELDS)                                                                \
    FIELDS(VESK_CLIENT_VALUE, VESK_CLIENT_FLAG)                                                          \
                                                                                                         \
public:                                                                                                  \
    Class() {                                                                                            \
        initializeModel();                                                                               \
    }                                                                                                    \
    explicit Class(const QString& json) {                                                                \
        initializeModel();                                                                               \
        fromJson(json);                                                                                  \
    }                                                                                                    \
    void initializeModel(){FIELDS(VESK_CLIENT_CLEAR, VESK_CLIENT_CLEAR_FLAG)} QJsonObject asJsonObject() \
        const override {                                                                                 \
        QJsonObject json;                                                                                \
        FIELDS(VESK_CLIENT_WRITE, VESK_CLIENT_WRITE_FLAG)                                                \
        return json;                                                                                     \
    }                                                                                                    \
    void fromJsonObject(const QJsonObject& json) override {                                              \
        FIELDS(VESK_CLIENT_READ, VESK_CLIENT_READ_FLAG)                                                  \
    }                                                                                                    \
    bool isSet() const override {                                                                        \
        FIELDS(VESK_CLIENT_ASK_SET, VESK_CLIENT_ASK_SET_FLAG)                                            \
        return false;                                                                                    \
    }                                                                                                    \
    bool isValid() const override {                                                                      \
        FIELDS(VESK_CLIENT_ASK_VALID, VESK_CLIENT_ASK_VALID_FLAG)                                        \
        return true;                                                                                     \
    }                                                                                                    \
                                                                                                         \
private:
