#pragma once

#include <QString>
#include <atomic>
#include <functional>

#include "bottleservice/components/Sources.h"
#include "bottleservice/result/Reason.h"

class QFile;

/// Checks and copies the files of sources on the disk. Blocks; for worker threads.
namespace SourceFile {

/// Gets a block of a file, and returns why no more is wanted; empty to go on.
using Take = std::function<Reason(const QByteArray& block)>;

/// Passes the rest of an open file to a function, block by block. `name` is for the reason.
Reason readBlocks(QFile* file, const QString& name, const std::atomic_bool& cancelled, const Take& take);

/// Compares a file with the size and checksum of its source. Returns a reason when they differ, empty when
/// they agree or are not known. `address` is for the reason.
Reason check(const QString& path, const Source& source, const QString& address,
             const std::atomic_bool& cancelled);

/// Copies a regular file of at most `limit` bytes, and replaces the target. Empty on success.
Reason copy(const QString& from, const QString& to, const Source& wanted, qint64 limit,
            const std::atomic_bool& cancelled);

/// The reason of a failed write, from the file's error. For any thread.
Reason writeFailure(const QFile& file);

}  // namespace SourceFile
