#include "core/ImageCache.h"

#include <QDateTime>
#include <QDir>

#include "core/base/Paths.h"

void purgeImageCache(int days) {
    QDir cache(Paths::imageCacheDir());
    const QDateTime limit = QDateTime::currentDateTime().addDays(-days);
    for (const QFileInfo& file : cache.entryInfoList(QDir::Files | QDir::Hidden | QDir::System)) {
        if (file.lastModified() < limit)
            cache.remove(file.fileName());
    }
}
