#pragma once

#include <QObject>
#include <QVector>

#include "bottleservice/components/Sources.h"
#include "bottleservice/result/Reason.h"

class Download;
class Downloads;

/// Fetches several files, one after the other. Owned by the requests that need the files; lives in the main
/// thread.
class FileFetch : public QObject {
    Q_OBJECT

public:
    FileFetch(Downloads* downloads, const QVector<Source>& sources, QObject* parent = nullptr);
    ~FileFetch() override;

    void start();
    void cancel();

Q_SIGNALS:
    void fileStarted(const QString& file);
    /// Of the current file, in bytes; total is 0 while it is not known.
    void progress(qint64 received, qint64 total);
    /// Exactly once; an empty reason means that all files are there.
    void finished(const Reason& reason);

private:
    void next();
    void drop();
    void finish(const Reason& reason);

    Downloads* m_downloads;
    QVector<Source> m_sources;
    Download* m_current = nullptr;
    bool m_done = false;
};
