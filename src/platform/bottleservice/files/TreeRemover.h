#pragma once

#include <QString>
#include <atomic>

/// Removes a directory tree and nothing else: links are removed as links, no directory is entered by its
/// path, and neither a link nor a mount point is ever crossed. Blocks; runs in a worker.
namespace TreeRemover {

/// True when nothing is left. Ends early, with what is then left, when `stop` becomes true. Otherwise a
/// sentence in error, and everything that could be removed is gone. A path that is itself a link is refused.
bool remove(const QString& path, QString* error, const std::atomic_bool* stop = nullptr);

}  // namespace TreeRemover
