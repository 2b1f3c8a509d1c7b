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

struct Result {
    Manifest manifest;
    /// One English sentence, as a rule with line and column ("Line 12, column 5: ..."); empty when the
    /// manifest is good.
    QString error;
};

Result read(const QByteArray& text);

}  // namespace ManifestReader
