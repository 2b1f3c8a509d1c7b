#pragma once

#include <QHash>
#include <QNetworkAccessManager>
#include <QPixmap>
#include <QPointer>
#include <QThreadPool>
#include <QUrl>

class HttpRequest;
class QNetworkReply;
struct HttpAnswer;

/// Fetches pictures by their addresses, http or https, and keeps them on disk: Paths::imageCacheDir(), a file
/// named by the hexadecimal MD5 of the encoded address, which holds the bytes as they came (of a picture of
/// more than 512 pixels a smaller PNG, of an SVG a PNG of what was drawn). Local files are read where they
/// lie. The limits are those of UntrustedImage. Keeps no picture in memory. One for the process, owned by the
/// application object; GUI thread. New pictures are decoded and written on other threads.
class NetworkImageLoader : public QObject {
    Q_OBJECT
public:
    static NetworkImageLoader* instance();

    /// Emits imageLoaded() before it returns, and returns null, for a local file and for a picture on disk.
    /// Otherwise imageLoaded() follows, unless all who asked take it back. The reply is the loader's and the
    /// same for all who ask for the address meanwhile; null for a bad address and while the picture is
    /// decoded.
    QNetworkReply* load(const QUrl& url);
    /// Takes back one load() whose imageLoaded() has not come: with the last one the download is aborted.
    void release(const QUrl& url);
    /// What stands for a picture that cannot be had: 256 by 256.
    QPixmap defaultPixmap();
    static QString cacheFile(const QUrl& url);
    /// An address that came from the net; empty unless it is http or https.
    static QUrl webUrl(const QString& text);

Q_SIGNALS:
    void imageLoaded(const QUrl& url, const QPixmap& pixmap);

private:
    struct Running {
        QPointer<HttpRequest> request;
        int users;  ///< the calls of load() that were not taken back
    };

    NetworkImageLoader();
    void onImageDownloaded(const QUrl& url, const HttpAnswer& answer);
    void show(const QUrl& url, const QImage& image);

    QHash<QUrl, Running> m_running;   ///< until their pictures are shown
    QNetworkAccessManager m_manager;  ///< goes before m_running: it ends the requests
    QThreadPool m_decoders;
    QPixmap m_default;
};
