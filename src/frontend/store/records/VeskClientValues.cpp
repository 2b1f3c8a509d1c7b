#include "store/records/VeskClientValues.h"

#include <QJsonDocument>
#include <QLoggingCategory>
#include <cmath>
#include <limits>

namespace OpenAPI {

namespace {

template <class T>
QString textOf(const T& value, const char* complaint) {
    if (!value.isValid())
        qWarning("%s", complaint);
    return value.toString(Qt::ISODate);
}

template <class T>
bool readTime(T& value, const QString& text) {
    value = T::fromString(text, Qt::ISODate);
    return value.isValid();
}

template <class T>
bool readInteger(T& value, const QJsonValue& json) {
    value = 0;
    const double number = std::trunc(json.toDouble(std::numeric_limits<double>::quiet_NaN()));
    // The upper limit itself is no double for 64 bits, but one more than it is.
    const double limit = std::ldexp(1.0, std::numeric_limits<T>::digits);
    if (!(number >= -limit && number < limit))
        return false;
    value = T(number);
    return true;
}

}  // namespace

QString toStringValue(const QString& value) {
    return value;
}

QString toStringValue(const QDateTime& value) {
    return textOf(value, "DateTime is invalid");
}

QString toStringValue(const QByteArray& value) {
    return QString::fromLatin1(value.toBase64());
}

QString toStringValue(const QDate& value) {
    return textOf(value, "Date is invalid");
}

QString toStringValue(qint32 value) {
    return QString::number(value);
}

QString toStringValue(qint64 value) {
    return QString::number(value);
}

QString toStringValue(bool value) {
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

QString toStringValue(float value) {
    return QString::number(double(value));
}

QString toStringValue(double value) {
    return QString::number(value);
}

QString toStringValue(const VeskClientObject& value) {
    return value.asJson();
}

QJsonValue toJsonValue(const QString& value) {
    return value;
}

QJsonValue toJsonValue(const QDateTime& value) {
    return toStringValue(value);
}

QJsonValue toJsonValue(const QByteArray& value) {
    return toStringValue(value);
}

QJsonValue toJsonValue(const QDate& value) {
    return toStringValue(value);
}

QJsonValue toJsonValue(qint32 value) {
    return value;
}

QJsonValue toJsonValue(qint64 value) {
    return value;
}

QJsonValue toJsonValue(bool value) {
    return value;
}

QJsonValue toJsonValue(float value) {
    return double(value);
}

QJsonValue toJsonValue(double value) {
    return value;
}

QJsonValue toJsonValue(const VeskClientObject& value) {
    return value.asJsonObject();
}

bool fromStringValue(const QString& text, QString& value) {
    value = text;
    return !text.isEmpty();
}

bool fromStringValue(const QString& text, QDateTime& value) {
    return readTime(value, text);
}

bool fromStringValue(const QString& text, QByteArray& value) {
    const auto decoded =
        QByteArray::fromBase64Encoding(text.toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    value = decoded.decoded;
    return decoded.decodingStatus == QByteArray::Base64DecodingStatus::Ok;
}

bool fromStringValue(const QString& text, QDate& value) {
    return readTime(value, text);
}

bool fromStringValue(const QString& text, qint32& value) {
    bool isGood = false;
    value = text.toInt(&isGood);
    return isGood;
}

bool fromStringValue(const QString& text, qint64& value) {
    bool isGood = false;
    value = text.toLongLong(&isGood);
    return isGood;
}

bool fromStringValue(const QString& text, bool& value) {
    value = text == "true" || text == "1";
    return value || text == "false" || text == "0";
}

bool fromStringValue(const QString& text, float& value) {
    bool isGood = false;
    value = text.toFloat(&isGood);
    return isGood;
}

bool fromStringValue(const QString& text, double& value) {
    bool isGood = false;
    value = text.toDouble(&isGood);
    return isGood;
}

bool fromStringValue(const QString& text, VeskClientObject& value) {
    value.fromJson(text);
    return value.isValid();
}

bool fromJsonValue(QString& value, const QJsonValue& json) {
    value.clear();
    if (json.isString())
        value = json.toString();
    else if (json.isBool())
        value = toStringValue(json.toBool());
    else if (json.isDouble())
        value = QString::number(json.toDouble());
    else
        return false;
    return true;
}

bool fromJsonValue(QDateTime& value, const QJsonValue& json) {
    return readTime(value, json.toString());
}

bool fromJsonValue(QByteArray& value, const QJsonValue& json) {
    value.clear();
    return json.isString() && fromStringValue(json.toString(), value);
}

bool fromJsonValue(QDate& value, const QJsonValue& json) {
    return readTime(value, json.toString());
}

bool fromJsonValue(qint32& value, const QJsonValue& json) {
    return readInteger(value, json);
}

bool fromJsonValue(qint64& value, const QJsonValue& json) {
    return readInteger(value, json);
}

bool fromJsonValue(bool& value, const QJsonValue& json) {
    value = json.toBool();
    return json.isBool();
}

bool fromJsonValue(float& value, const QJsonValue& json) {
    value = float(json.toDouble());
    return json.isDouble();
}

bool fromJsonValue(double& value, const QJsonValue& json) {
    value = json.toDouble();
    return json.isDouble();
}

bool fromJsonValue(VeskClientObject& value, const QJsonValue& json) {
    value.fromJsonObject(json.toObject());
    return value.isValid();
}

}  // namespace OpenAPI
