#pragma once

#include <QByteArray>

namespace Fenk {

/// One write to standard error. A reader that has gone (a closed terminal pipe, a restarted journal) is no
/// reason to die: the broken pipe's signal is held back. Errors are ignored, there is no place to tell them.
void writeToStandardError(const QByteArray& bytes);

}  // namespace Fenk
