#pragma once

#include <QElapsedTimer>
#include <QNetworkAccessManager>
#include <QObject>
#include <QStringList>
#include <QUrl>
#include <memory>

#include "backend/OwnThread.h"
#include "backend/PendingWork.h"

class DownloadPart;
class HttpRequest;
class QNetworkReply;
struct HttpAnswer;

/// Downloads a set-up program into a directory of the user. The file appears there complete or not at all,
/// under a name that was free, and only if its content is of an accepted kind. What has come before it was
/// cancelled or a connection broke off is kept as a DownloadPart, and the next start() goes on from there if
/// the address is the same and the server still has the same file. Keeps the process running. GUI thread; one
/// download after the other. Destruction cancels.
class SetupDownload : public QObject {
    Q_OBJECT
public:
    static constexpr qint64 MaximumBytes = qint64(16) << 30;

    explicit SetupDownload(QObject* parent);
    ~SetupDownload() override;

    /// Only http and https.
    static bool canFetch(const QUrl& url);

    /// The kinds of files that are saved: "exe" and "msi", unless this adds "zip" and "yml".
    void setAccepted(const QStringList& suffixes) { m_accepted = suffixes; }
    /// Whether this object has a part with which start() would go on.
    bool canResume(const QUrl& url) const;
    /// Removes that part.
    void discard();

    /// Ends once, in succeeded(), failed() or cancelled(). The directory is made if it is missing.
    void start(const QUrl& url, const QString& directory, const QString& appName);
    void cancel();
    bool isRunning() const { return bool(m_hold); }

Q_SIGNALS:
    /// In bytes; `total` is -1 as long as it is not known.
    void progressChanged(qint64 received, qint64 total);
    void succeeded(const QString& path);
    /// The text is for the user.
    void failed(const QString& errorText);
    void cancelled();

private:
    enum class Part { Dropped, Kept };

    struct Saved {
        QString path;  ///< empty if it could not be saved
        QString errorText;
        QString reason;
        Part part = Part::Dropped;  ///< what becomes of it if it could not be saved
    };
    struct Names;

    static QString statusText(int status);
    static QString suffixOf(const DownloadPart& part, const Names& names);
    static Saved save(DownloadPart* part, const Names& names);
    void onOpened(const std::shared_ptr<DownloadPart>& part, const QString& reason);
    void send(const QUrl& url);
    void onHead(const QNetworkReply& reply);
    void onProgress(qint64 received, qint64 total);
    void onFinished(const HttpAnswer& answer);
    void onStatus(const HttpAnswer& answer);
    void onWhole(const HttpAnswer& answer);
    void onSaved(const Saved& saved);
    void checkRoom(qint64 missing);
    void end(Part part);
    void endCancelled();
    void fail(const QString& errorText, const QString& reason, Part part = Part::Dropped);
    void dropRequest();

    QNetworkAccessManager m_manager;
    OwnThread m_thread;                    ///< for the files, which may lie on a slow disk
    std::shared_ptr<DownloadPart> m_part;  ///< outlives the request
    PendingWork::Hold m_hold;              ///< while it runs
    QElapsedTimer m_roomAsked;
    bool m_isCancelled = false;
    std::unique_ptr<HttpRequest> m_request;  ///< writes into the file
    QStringList m_accepted{"exe", "msi"};
    QUrl m_url;
    QUrl m_lastUrl;  ///< after redirects
    QString m_directory;
    QString m_appName;
    qint64 m_begin = 0;  ///< bytes that came before this request
};
