#include "bottleservice/components/FileFetch.h"

#include <utility>

#include "bottleservice/components/Download.h"
#include "bottleservice/components/Downloads.h"

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
