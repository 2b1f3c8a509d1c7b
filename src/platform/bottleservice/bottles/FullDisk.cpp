#include "bottleservice/bottles/FullDisk.h"

#include <QStorageInfo>

namespace {

constexpr qint64 FullBytes = 4 * 1024 * 1024;

}  // namespace

QString FullDisk::explain(const QString& directory, const QString& fault) {
    const QStorageInfo disk(directory);
    if (!disk.isValid() || disk.bytesAvailable() >= FullBytes || fault.startsWith("No space left"))
        return fault;
    return QString("No space left on the disk that holds %1. %2").arg(directory, fault);
}
