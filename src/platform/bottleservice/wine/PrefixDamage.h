#pragma once

#include <QString>
#include <QStringList>
#include <atomic>

/// Files that a prefix has lost since it was copied from its template. Whole files that differ from the
/// template's are the bottle's own, brought by installers or components, and are never touched. For worker
/// threads.
namespace PrefixDamage {

/// Paths relative to the prefix of what the template has and the prefix has not: files below "windows" that
/// are missing, lead nowhere or are cut short, registry files that are missing or empty, and the link of
/// drive C.
QStringList find(const QString& prefix, const QString& templatePath, const std::atomic_bool& cancelled);

enum class Links {
    AsInTemplate,
    Copied  ///< for a prefix that Wine updates by itself, which writes through links
};

/// Puts the template's files in the place of those. Nothing may run in the prefix. Empty, or a sentence.
QString restore(const QString& prefix, const QString& templatePath, const QStringList& files, Links links,
             const std::atomic_bool& cancelled);

}  // namespace PrefixDamage
