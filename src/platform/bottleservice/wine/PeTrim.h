#pragma once

#include <QByteArray>

/// Removes the debug information from Wine's own PE files, which is most of their size where a distribution
/// does not strip them. It lies in sections with names such as ".debug_info", written as "/number" when they
/// are long, behind everything that is loaded.
namespace PeTrim {

/// The file without what only a debugger reads. Empty for a file that is not Wine's own, that has no debug
/// information or that is laid out in another way.
QByteArray trimmed(const QByteArray& file);

}  // namespace PeTrim
