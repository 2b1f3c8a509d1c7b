#pragma once

#include <QByteArray>
#include <QString>

/// The rules of paths in a backup. A path is relative to the bottle and made of bytes as they are on disk,
/// with "/" between the parts. What a backup says is never trusted: it must pass these checks before it
/// becomes a path on disk.
namespace BackupPath {

constexpr int MaximumBytes = 3072;     ///< of a path, so that it fits below any bottle's directory
constexpr int MaximumPartBytes = 255;  ///< what file systems take for one name
constexpr int MaximumDepth = 100;

/// Whether it leads to a place below the bottle by its name alone.
bool isInside(const QByteArray& path);

/// Whether a link at that path leads to a place in the bottle. ".." is not allowed after a name, which may
/// itself be a link.
bool staysInside(const QByteArray& path, const QByteArray& target);

/// Whether it belongs to the machine or to the moment, and is never in a backup: logs, launch.json, a mark of
/// Wine's server, and the hidden files and directories of the service's own work.
bool isPassedOver(const QByteArray& path);

/// Whether a new bottle may have a link out of the bottle there: drives, and folders of the user.
bool isStandardLink(const QByteArray& path);
/// Whether a file of Wine may be named there instead of being in the backup.
bool isWinePlace(const QByteArray& path);

/// The directory part; empty for a name in the bottle's own directory.
QByteArray parentOf(const QByteArray& path);

/// The path as Windows compares it: without upper case. Bytes that are no UTF-8 stay apart.
QString folded(const QByteArray& path);

/// Paths in JSON: percent signs are encoded, and whatever is no UTF-8.
QString toText(const QByteArray& path);
QByteArray fromText(const QString& text);

}  // namespace BackupPath
