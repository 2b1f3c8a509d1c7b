#pragma once

#include <QJsonObject>
#include <QString>

/// Readers of a program's record, one entry of a bottle's programs and the text of the program signals.
namespace ProgramRecord {

QString id(const QJsonObject& record);      ///< hyphenated UUID without braces
QString name(const QJsonObject& record);    ///< display name
QString path(const QJsonObject& record);    ///< Windows or Unix path of the executable
QString folder(const QJsonObject& record);  ///< Windows or Unix directory
QString icon(const QJsonObject& record);    ///< icon file; when it isn't a file, use iconFallback()
QString arguments(const QJsonObject& record);
QJsonObject envs(const QJsonObject& record);
int stars(const QJsonObject& record);            ///< 0: unrated
bool autoDiscovered(const QJsonObject& record);  ///< the service found it by itself
QString iconFallback();                          ///< icon theme name

/// The smallest record that adds a program.
QJsonObject minimal(const QString& id, const QString& name, const QString& path);
/// A discovered program's record as the client stores it: without "auto_discovered".
QJsonObject adopted(QJsonObject record);
/// Compact JSON, the form that goes on the wire.
QString toText(const QJsonObject& record);
QJsonObject fromText(const QString& text);

}  // namespace ProgramRecord
