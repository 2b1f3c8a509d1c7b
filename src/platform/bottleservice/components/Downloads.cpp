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
    // It has ended; the last user's event loop turn is over when it goes.
    download->deleteLater();
}

FileFetch::FileFetch(Downloads* downloads, const QVector<Source>& sources, QObject* parent)
    : QObject(parent), m_downloads(downloads), m_sources(sources) {}

FileFetch::~FileFetch() {
    drop();
}

void FileFetch::start() {
    QMetaObject::invokeMethod(this, &FileFetch::next, Qt::QueuedConnection);
}

void FileFetch::cancel() {
    drop();
    finish(Reason::Cancelled);
}

void FileFetch::next() {
    drop();
    if (m_done)
        return;
    if (m_sources.isEmpty()) {
        finish({});
        return;
    }
    const Source source = m_sources.takeFirst();
    Q_EMIT fileStarted(source.file);
    m_current = m_downloads->obtain(source);
    connect(m_current, &Download::progress, this, &FileFetch::progress);
    connect(m_current, &Download::finished, this, [this](const QString&, const Reason& reason) {
        if (reason.isEmpty())
            next();
        else
            finish(reason);
    });
}

void FileFetch::drop() {
    Download* download = std::exchange(m_current, nullptr);
    if (!download)
        return;
    download->disconnect(this);
    m_downloads->release(download);
}

void FileFetch::finish(const Reason& reason) {
    drop();
    if (!std::exchange(m_done, true))
        Q_EMIT finished(reason);
}
