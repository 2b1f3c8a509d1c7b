#include "bottleservice/components/Downloads.h"

#include <QFileInfo>

#include "bottleservice/components/Download.h"
#include "bottleservice/components/FileSizes.h"

Downloads::Downloads(const QString& dataDir, QObject* parent)
    : QObject(parent), m_dataDir(dataDir), m_directory(dataDir + "/downloads") {}

Downloads::~Downloads() = default;

Download* Downloads::obtain(const Source& source) {
    Entry& entry = m_running[source.file];
    ++entry.users;
    if (!entry.download) {
        entry.download = new Download(&m_network, source, m_directory, this);
        connect(entry.download, &Download::finished, this, [this, source](const QString& path) {
            m_running.remove(source.file);
            if (!path.isEmpty())
                onFetched(source, path);
        });
        entry.download->start();
    }
    return entry.download;
}

void Downloads::onFetched(const Source& source, const QString& path) {
    if (!source.sha256.isEmpty() && source.size < 0)
        FileSizes::remember(m_dataDir, source.sha256, QFileInfo(path).size());
}

void Downloads::release(Download* download) {
    for (auto it = m_running.begin(); it != m_running.end(); ++it) {
        if (it->download != download)
            continue;
        if (--it->users == 0) {
            m_running.erase(it);
            download->disconnect(this);
            download->cancel();
            download->deleteLater();
        }
        return;
    }
    // It has ended. Deleted later, since it may be emitting its signal.
    download->deleteLater();
}
