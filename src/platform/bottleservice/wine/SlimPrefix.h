#pragma once

#include <QString>
#include <QStringList>
#include <atomic>

/// Prefixes without copies of Wine's own PE files: a file that equals the runner's is replaced by a link to
/// it, except those in ReplaceableFiles, which lose their debug information. Such a prefix is small and
/// quickly copied. Wine never updates it by itself, since it would write through the links. Blocks; for
/// worker threads.
namespace SlimPrefix {

/// The directories of a Wine's PE files ("x86_64-windows", "i386-windows"); empty when they are not found.
QStringList peDirectories(const QString& wine);

/// Replaces the file at the path, if any, by a link to the source or a copy of it, in one step. The directory
/// must exist.
bool put(const QString& source, const QString& path, bool asLink);

/// Makes a prefix slim. Returns an error text, empty on success.
QString slim(const QString& prefix, const QString& wine, const std::atomic_bool& cancelled);

/// Updates a prefix that was copied from an older template to a new one: adds missing files, replaces those
/// that are still as the old template had them, and keeps the bottle's own. The old template may be missing;
/// then only missing files and dangling links are replaced. Returns an error text, empty on success.
QString renew(const QString& prefix, const QString& oldTemplate, const QString& newTemplate,
              const std::atomic_bool& cancelled);

}  // namespace SlimPrefix
