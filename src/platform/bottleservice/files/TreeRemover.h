#pragma once

#include <QString>
#include <atomic>

/// Removes a directory tree and nothing else: links are removed as links, directories are opened relative to
/// their parent and never by path, and neither links nor mount points are crossed. Blocks; for worker
/// threads.
namespace TreeRemover {

/// Returns true when nothing is left. On failure error has a text, and everything that could be removed is
/// gone. Ends early when `stop` becomes true. A path that is itself a link is refused.
bool remove(const QString& path, QString* error, const std::atomic_bool* stop = nullptr);

}  // namespace TreeRemover
