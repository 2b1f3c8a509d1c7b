#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

/// A file that describes the bottle in which a program works, for other users: what the program is, and with
/// which Wine, components, settings and overrides it was made to work. YAML:
///   Name, Introduction, Category, downloadUrl, packageSize, Contributor {Name, Email},
///   DebInfo {wine_cmd, wine_deps}: the package of the Wine and further ones,
///   Bottle {Windows, DXVK, VKD3D, Parameters, DLL_Overrides, Font_Replacements, Dependencies},
///   Program {name, path, arguments, envs}
/// It contains no path of this user's machine.
namespace Manifest {

extern const char FileName[];

/// Reads what the caller says of the program: the texts "bottlesName", "programUuid", "name", "introduction",
/// "downloadUrl", "packageSize", "contributor", "contributorEmail" and "category". On failure an empty object
/// and an error text.
QJsonObject parseForm(const QString& json, QString* error);

/// `record` is the bottle, `program` its program.
QByteArray render(const QJsonObject& form, const QJsonObject& record, const QJsonObject& program);

}  // namespace Manifest
