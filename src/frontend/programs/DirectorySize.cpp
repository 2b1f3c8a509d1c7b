#include "programs/DirectorySize.h"

#include <fts.h>
#include <sys/stat.h>

#include <QFile>
#include <QSet>
#include <memory>

namespace {

constexpr qint64 BlockBytes = 512;

}  // namespace

qint64 DirectorySize::of(const QString& path) {
    QByteArray name = QFile::encodeName(path);
    char* const roots[] = {name.data(), nullptr};
    const std::unique_ptr<FTS, decltype(&fts_close)> tree(fts_open(roots, FTS_PHYSICAL | FTS_XDEV, nullptr),
                                                          &fts_close);
    qint64 bytes = 0;
    QSet<quint64> linked;
    while (const FTSENT* entry = tree ? fts_read(tree.get()) : nullptr) {
        if (entry->fts_info == FTS_DP || !entry->fts_statp || entry->fts_info == FTS_NS)
            continue;
        const struct stat& status = *entry->fts_statp;
        if (!S_ISDIR(status.st_mode) && status.st_nlink > 1) {
            if (linked.contains(status.st_ino))
                continue;
            linked.insert(status.st_ino);
        }
        bytes += qint64(status.st_blocks) * BlockBytes;
    }
    return bytes;
}
