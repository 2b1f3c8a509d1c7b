#pragma once

#include <QByteArray>
#include <QString>

#include "manifest/Manifest.h"

/// Reads the text of a manifest, which anybody may have written. Size, depth, number of nodes, lengths of
/// texts and lists are limited; anchors, aliases and tags, unknown and repeated keys and values of the wrong
/// type are refused. docs/MANIFEST.md has all rules. A pure function, for any thread.
namespace ManifestReader {

constexpr int MaximumBytes = 2 * 1024 * 1024;
constexpr int MaximumFileBytes = 1024 * 1024;  ///< of all Files together
constexpr int MaximumEntries = 200;            ///< of a map or a list, where nothing else is said
/// The longest texts, in characters.
constexpr int Short = 255;    ///< names
constexpr int Medium = 4096;  ///< descriptions, addresses, arguments of a command
constexpr int Long = 65536;   ///< data of a registry value, arguments of a program

struct Result {
    Manifest manifest;
    /// One English sentence, as a rule with line and column ("Line 12, column 5: ..."); empty when the
    /// manifest is good.
    QString error;
};

Result read(const QByteArray& text);

}  // namespace ManifestReader
