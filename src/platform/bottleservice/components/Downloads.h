#pragma once

#include <QHash>
#include <QNetworkAccessManager>
#include <QObject>
#include <QVector>

#include "bottleservice/components/Sources.h"
#include "bottleservice/result/Reason.h"

class Download;

/// Fetches files into the directory "downloads" of the data directory, each file only once at a time for all
/// who want it. Files stay there for the next bottle. Owned by BottleService; lives in the main thread.
class Downloads : public QObject {
    Q_OBJECT

public:
    explicit Downloads(const QString& dataDir, QObject* parent = nullptr);
    ~Downloads() override;

    QString directory() const { return m_directory; }
    QString pathOf(const QString& file) const { return m_directory + '/' + file; }
    bool isIdle() const { return m_running.isEmpty(); }

    /// Returns the running download of the file, or a new one. The caller gives it back with release(), which
    /// ends it when no other caller uses it.
    Download* obtain(const Source& source);
    void release(Download* download);

private:
    struct Entry {
        Download* download = nullptr;
        int users = 0;
    };

    void onFetched(const Source& source, const QString& path);

    QString m_dataDir;
    QString m_directory;
    QNetworkAccessManager m_network;
    QHash<QString, Entry> m_running;  ///< by file
};
