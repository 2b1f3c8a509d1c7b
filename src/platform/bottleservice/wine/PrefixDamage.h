#pragma once

#include <QString>
#include <QStringList>
#include <atomic>

/// Finds and restores the files that a prefix has lost since it was copied from its template. Complete files
/// that differ from the template's are the bottle's own, brought by installers or components, and are never
/// touched. Blocks; for worker threads.
namespace PrefixDamage {

/// The paths, relative to the prefix, of lost files: files below "windows" that are missing, dangling links
/// or cut short; registry files that are missing or empty; the link of drive C.
QStringList find(const QString& prefix, const QString& templatePath, const std::atomic_bool& cancelled);

enum class Links {
    AsInTemplate,
    Copied  ///< for a prefix that Wine updates itself, since that writes through links
};

/// Restores these files from the template. Nothing may run in the prefix. Returns an error text, empty on
/// success.
QString restore(const QString& prefix, const QString& templatePath, const QStringList& files, Links links,
                const std::atomic_bool& cancelled);

}  // namespace PrefixDamage
