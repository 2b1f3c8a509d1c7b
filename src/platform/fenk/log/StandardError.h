#pragma once

#include <QByteArray>

namespace Fenk {

/// Writes to standard error with one write() and without raising SIGPIPE if the reader is gone (a closed
/// terminal, a restarted journal). Errors are ignored, since they cannot be reported anywhere.
void writeToStandardError(const QByteArray& bytes);

}  // namespace Fenk
