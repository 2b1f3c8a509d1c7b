#pragma once

#include <QString>
#include <QStringList>

/// Copies files of components into a prefix. An existing file, also a link to a file of the runner, is
/// replaced and never written into. Directories that are links are refused. Blocks; for worker threads.
namespace PrefixFiles {

bool is64Bit(const QString& prefix);
bool is32BitProgram(const QString& file);

/// The directories for a file: system32 for a 64-bit DLL, syswow64 for a 32-bit one in a 64-bit bottle, both
/// for a file that is no program. None for a 64-bit DLL in a 32-bit bottle or a DLL for another processor.
QStringList systemDirectories(const QString& prefix, const QString& file);

/// Copies the file into the directory. Returns an error text, empty on success; so do the functions below.
QString put(const QString& prefix, const QString& file, const QString& directory);

/// Copies files into the system directories.
QString putSystemFiles(const QString& prefix, const QStringList& files, bool only32Bit);

/// Copies files into the directory of fonts.
QString putFonts(const QString& prefix, const QStringList& files);

/// Restores Wine's own DLL from the template; removes the DLL when the template has none.
QString restoreOwn(const QString& prefix, const QString& templatePath, const QString& dll);

}  // namespace PrefixFiles
