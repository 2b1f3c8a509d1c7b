#pragma once

#include <QByteArray>

/// Leaves the debug information out of Wine's own PE files, which is most of their size where a distribution
/// does not strip them. The format is that of PE and COFF: sections with names such as ".debug_info", written
/// as "/number" when they are long, behind all that is loaded.
namespace PeTrim {

/// The file without what only a debugger reads; empty for a file that is not Wine's own, that has nothing of
/// the kind, or that is laid out in another way.
QByteArray trimmed(const QByteArray& file);

}  // namespace PeTrim
