#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <optional>

#include "bottleservice/result/Reason.h"
#include "manifest/Manifest.h"

/// The export of a bottle in which a program works as a manifest for other users (docs/MANIFEST.md): what the
/// program is, and with which Wine, components, settings and overrides it was made to work. It contains no
/// path of this user's machine: arguments and variables that name the home, a profile or drive Z: are left
/// out, as are values that the language cannot say.
namespace ManifestExport {

extern const char FileName[];

/// Reads what the caller says of the program: the texts "bottlesName", "programUuid", "name", "introduction",
/// "downloadUrl", "packageSize", "contributor", "contributorEmail" and "category". On failure an empty object
/// and the reason.
QJsonObject parseForm(const QString& json, Reason* reason);

/// `record` is the bottle, `program` its program. From the manifest that the bottle was set up from come what
/// a bottle does not record: registry values, files, commands and, if it has the same address, the facts of
/// the set-up file.
Manifest make(const QJsonObject& form, const QJsonObject& record, const QJsonObject& program,
              const std::optional<Manifest>& origin);

/// The text of the manifest; empty, with the reason, when a value makes it one that nobody could read. Which
/// one goes to the log.
QByteArray render(const Manifest& manifest, Reason* reason);

}  // namespace ManifestExport
