#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>
#include <optional>

/// A program that the set-up of a manifest runs in the bottle.
struct ManifestCommand {
    QString program;
    QStringList arguments;
    QString description;
};

/// What the application itself reads of a manifest; everything else is for the background service, which gets
/// the whole text and checks it. All texts are untrusted.
struct ManifestFacts {
    QString name;  ///< of the application; empty when it is no text
    QString version;
    QString contributor;
    QString contributorEmail;
    QString winePackage;       ///< the Wine that the bottle wants; a default when the manifest names none
    QString wineDependencies;  ///< further packages, as one text
    QString downloadUrl;       ///< where the user can get the set-up program
    QByteArray setupSha256;    ///< of the expected set-up program: 64 digits in lower case, or empty
    qint64 setupBytes = 0;     ///< its size; 0 when it is not told
    QVector<ManifestCommand> commands;

    static constexpr int MaximumBytes = 2 << 20;

    /// Reads UTF-8 YAML. Nothing, with the reason in `error`, for what is no manifest: it must be a map with
    /// a Name and a DebInfo. Aliases, and a text that is too large or too deep, are refused as well. Takes
    /// up to some tenths of a second. For any thread.
    static std::optional<ManifestFacts> read(const QByteArray& yaml, QString* error);
};
