#include "bottleservice/bottles/FullDisk.h"

#include <QDebug>
#include <QStorageInfo>

namespace {

constexpr qint64 FullBytes = 4 * 1024 * 1024;
const QLatin1String Told("No space left");

}  // namespace

Reason FullDisk::explain(const QString& directory, const Reason& fault) {
    const QStorageInfo disk(directory);
    const bool isFull = disk.isValid() && disk.bytesAvailable() < FullBytes;
    // Whoever has found it may have made room since.
    if (fault.isEmpty() || (!isFull && !fault.text().startsWith(Told)))
        return fault;
    qWarning() << "the disk is full:" << fault.text();
    return Reason(Reason::DiskFull, {directory});
}
