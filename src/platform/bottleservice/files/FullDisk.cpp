#include "bottleservice/files/FullDisk.h"

#include <QDebug>
#include <QStorageInfo>
#include <cerrno>
#include <cstring>

namespace {

constexpr qint64 FullBytes = 4 * 1024 * 1024;

}  // namespace

Reason FullDisk::explain(const QString& directory, const Reason& fault) {
    const QStorageInfo disk(directory);
    const bool isFull = disk.isValid() && disk.bytesAvailable() < FullBytes;
    if (fault.isEmpty() || (!isFull && !fault.text().contains(QString::fromLocal8Bit(strerror(ENOSPC)))))
        return fault;
    qWarning().noquote() << "the disk that holds" << directory << "is full:" << fault.text();
    return Reason(Reason::DiskFull, {directory});
}
