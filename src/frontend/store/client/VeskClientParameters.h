#pragma once

#include <QJsonObject>
#include <QString>

/// How parameters of an operation stand in its address, by the seven styles of OpenAPI. A style that is none
/// of them gives "none" for all three parts; an empty one counts as "form".
namespace OpenAPI {
namespace VeskClientParameters {

QString stylePrefix(const QString& style);
QString styleSuffix(const QString& style);
QString styleDelimiter(const QString& style, const QString& name, bool isExplode);

/// Replaces "{name}" in the path by the encoded value.
void setPathParameter(QString* path, const QString& name, const QString& value,
                      const QString& style = QStringLiteral("simple"));
void addQueryParameter(QString* url, const QString& name, const QString& value, const QString& style = {});
/// One entry for each field of the object, in the order of their names.
void addQueryParameter(QString* url, const QString& name, const QJsonObject& value,
                       const QString& style = {});

}  // namespace VeskClientParameters
}  // namespace OpenAPI
