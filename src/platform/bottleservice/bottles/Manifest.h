#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

/// The recipe of a bottle in which a program works, for others: what the program is, which Wine and which
/// components, settings and overrides it was made to work with. YAML:
///   Name, Introduction, Category, downloadUrl, packageSize, Contributor {Name, Email},
///   DebInfo {wine_cmd, wine_deps}: the package of the Wine and further ones,
///   Bottle {Windows, DXVK, VKD3D, Parameters, DLL_Overrides, Font_Replacements, Dependencies},
///   Program {name, path, arguments, envs}
/// No path of this machine's user stands in it.
namespace Manifest {

extern const char FileName[];

/// What a caller says of the program: the texts "bottlesName", "programUuid", "name", "introduction",
/// "downloadUrl", "packageSize", "contributor", "contributorEmail" and "category". On failure an empty object
/// and a sentence.
QJsonObject parseForm(const QString& json, QString* error);

/// `record` is the bottle, `program` its program.
QByteArray render(const QJsonObject& form, const QJsonObject& record, const QJsonObject& program);

}  // namespace Manifest
