#pragma once

#include <QByteArray>
#include <QDate>
#include <QDateTime>
#include <QJsonValue>
#include <QString>

#include "store/records/VeskClientObject.h"

/// How values cross the wire of the store. In JSON, times are texts in ISO 8601 and bytes are base64. The
/// from functions return false, and leave the value at its default, for what can't be read.
namespace OpenAPI {

QString toStringValue(const QString& value);
QString toStringValue(const QDateTime& value);  ///< warns of an invalid one
QString toStringValue(const QByteArray& value);
QString toStringValue(const QDate& value);  ///< warns of an invalid one
QString toStringValue(qint32 value);
QString toStringValue(qint64 value);
QString toStringValue(bool value);
QString toStringValue(float value);
QString toStringValue(double value);
QString toStringValue(const VeskClientObject& value);

QJsonValue toJsonValue(const QString& value);
QJsonValue toJsonValue(const QDateTime& value);
QJsonValue toJsonValue(const QByteArray& value);
QJsonValue toJsonValue(const QDate& value);
QJsonValue toJsonValue(qint32 value);
QJsonValue toJsonValue(qint64 value);
QJsonValue toJsonValue(bool value);
QJsonValue toJsonValue(float value);
QJsonValue toJsonValue(double value);
QJsonValue toJsonValue(const VeskClientObject& value);

bool fromStringValue(const QString& text, QString& value);
bool fromStringValue(const QString& text, QDateTime& value);
bool fromStringValue(const QString& text, QByteArray& value);
bool fromStringValue(const QString& text, QDate& value);
bool fromStringValue(const QString& text, qint32& value);
bool fromStringValue(const QString& text, qint64& value);
bool fromStringValue(const QString& text, bool& value);
bool fromStringValue(const QString& text, float& value);
bool fromStringValue(const QString& text, double& value);
bool fromStringValue(const QString& text, VeskClientObject& value);

/// A string takes texts, booleans and numbers, these with six significant digits.
bool fromJsonValue(QString& value, const QJsonValue& json);
bool fromJsonValue(QDateTime& value, const QJsonValue& json);
bool fromJsonValue(QByteArray& value, const QJsonValue& json);
bool fromJsonValue(QDate& value, const QJsonValue& json);
/// An integer takes numbers only, without their fraction, and none that it can't hold.
bool fromJsonValue(qint32& value, const QJsonValue& json);
bool fromJsonValue(qint64& value, const QJsonValue& json);
bool fromJsonValue(bool& value, const QJsonValue& json);
bool fromJsonValue(float& value, const QJsonValue& json);
bool fromJsonValue(double& value, const QJsonValue& json);
/// The result is the record's own validity.
bool fromJsonValue(VeskClientObject& value, const QJsonValue& json);

}  // namespace OpenAPI
