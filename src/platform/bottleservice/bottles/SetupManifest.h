#pragma once

#include <QJsonObject>
#include <QString>
#include <optional>

#include "manifest/Manifest.h"

/// The manifest that a bottle was set up from, which stays in the bottle as setup-manifest.yml. Programs in
/// the bottle can change it, so it is checked as any other when it is read.
namespace SetupManifest {

extern const char FileName[];

/// Nothing when the bottle has none, or an invalid one, which is logged.
std::optional<Manifest> load(const QString& bottlePath);
/// Writes its text, as it was given, into a directory that does not have the bottle's name yet. Returns an
/// error text, empty on success.
QString save(const QString& directory, const QByteArray& text);

/// The record of a program that enters the bottle, with the arguments and variables that the manifest has for
/// its path, or for its file name where the manifest has only that, where the record has none.
QJsonObject completed(const QJsonObject& program, const std::optional<Manifest>& manifest);

/// A program of a manifest as a record without an id.
QJsonObject recordOf(const Manifest::Program& program);

}  // namespace SetupManifest
