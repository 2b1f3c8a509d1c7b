#pragma once

#include <QString>
#include <QStringList>

/// Puts files of components into a prefix. What stands there, also a link to a file of the runner, is
/// replaced and never written into. Directories that are links are refused. For worker threads.
namespace PrefixFiles {

bool is64Bit(const QString& prefix);
bool is32BitProgram(const QString& file);

/// Where a file of a component belongs: a 64-bit DLL into system32 and a 32-bit one into syswow64 of a 64-bit
/// bottle; a file that is no program into both. None for a 64-bit DLL in a 32-bit bottle, and for one of
/// another processor.
QStringList systemDirectories(const QString& prefix, const QString& file);

/// Empty, or a sentence.
QString put(const QString& prefix, const QString& file, const QString& directory);

/// Files into the system directories. Empty, or a sentence.
QString putSystemFiles(const QString& prefix, const QStringList& files, bool only32Bit);

/// Files into the directory of fonts. Empty, or a sentence.
QString putFonts(const QString& prefix, const QStringList& files);

/// Gives the prefix its Wine's own DLL again, from the template; without one there the file goes.
QString restoreOwn(const QString& prefix, const QString& templatePath, const QString& dll);

}  // namespace PrefixFiles
