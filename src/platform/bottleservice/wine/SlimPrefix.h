#pragma once

#include <QString>
#include <QStringList>
#include <atomic>

/// A prefix without the copies of Wine's own PE files: what equals a file of the runner becomes a link to it,
/// except what ReplaceableFiles lists, which loses its debug information. Such a prefix is small and quickly
/// copied, and Wine never updates it by itself, since it would write through the links. For worker threads.
namespace SlimPrefix {

/// The directories of a Wine's PE files ("x86_64-windows", "i386-windows"); empty where its layout is
/// unknown.
QStringList peDirectories(const QString& wine);

/// Puts a link to the source, or a copy of it, in the place of what stands at the path, if anything, in one
/// step. The directory must be there.
bool put(const QString& source, const QString& path, bool asLink);

/// Empty, or a sentence.
QString slim(const QString& prefix, const QString& wine, const std::atomic_bool& cancelled);

/// Brings a prefix that was copied from an older template up to the new one: adds what is missing, exchanges
/// what is still as the old template had it, and leaves alone what the bottle has of its own. The old
/// template may be gone; then only what is missing or leads nowhere is mended. Empty, or a sentence.
QString renew(const QString& prefix, const QString& oldTemplate, const QString& newTemplate,
              const std::atomic_bool& cancelled);

}  // namespace SlimPrefix
