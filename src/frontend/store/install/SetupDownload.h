#pragma once

#include <QNetworkAccessManager>
#include <QObject>
#include <QStringList>
#include <QTemporaryFile>
#include <QUrl>
#include <memory>

class HttpRequest;
class QNetworkReply;
struct HttpAnswer;

/// Downloads a set-up program into a directory of the user. The file appears there complete or not at all,
/// under a name that was free, and only if its content is of an accepted kind. What has come before a
/// connection broke off is kept until the next start(), which goes on from there if the address is the same
/// and the server still has the same file. GUI thread; one download after the other. Destruction cancels.
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
    /// Whether start() would go on with a part that has come before.
    bool canResume(const QUrl& url) const;

    /// Ends once, in succeeded(), failed() or cancelled(). The directory is made if it is missing.
    void start(const QUrl& url, const QString& directory, const QString& appName);
    void cancel();
    bool isRunning() const { return bool(m_request); }

Q_SIGNALS:
    /// In bytes; `total` is -1 as long as it is not known.
    void progressChanged(qint64 received, qint64 total);
    void succeeded(const QString& path);
    /// The text is for the user.
    void failed(const QString& errorText);
    void cancelled();

private:
    enum class Part { Dropped, Kept };

    static QString statusText(int status);
    void send(const QUrl& url);
    void onHead(const QNetworkReply& reply);
    void onProgress(qint64 received, qint64 total);
    void onFinished(const HttpAnswer& answer);
    void onStatus(const HttpAnswer& answer);
    void save(const HttpAnswer& answer);
    QString suffixOf(const QByteArray& disposition);
    void fail(const QString& errorText, const QString& reason, Part part = Part::Dropped);
    void dropRequest();

    QNetworkAccessManager m_manager;
    std::unique_ptr<QTemporaryFile> m_file;
    std::unique_ptr<HttpRequest> m_request;  ///< writes into the file
    QStringList m_accepted{"exe", "msi"};
    QUrl m_url;
    QUrl m_lastUrl;  ///< after redirects
    QString m_directory;
    QString m_appName;
    QByteArray m_validator;  ///< of the file on the server, for If-Range; empty when it told none
    qint64 m_begin = 0;      ///< bytes that came before this request
};
