#include "bottleservice/components/Downloads.h"

#include "bottleservice/components/Download.h"

Downloads::Downloads(const QString& dataDir, QObject* parent)
    : QObject(parent), m_directory(dataDir + "/downloads") {}

Downloads::~Downloads() = default;

Download* Downloads::obtain(const Source& source) {
    Entry& entry = m_running[source.file];
    ++entry.users;
    if (!entry.download) {
        entry.download = new Download(&m_network, source, m_directory, this);
        const QString file = source.file;
        connect(entry.download, &Download::finished, this, [this, file] { m_running.remove(file); });
        entry.download->start();
    }
    return entry.download;
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
