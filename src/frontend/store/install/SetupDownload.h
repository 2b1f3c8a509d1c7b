#pragma once

#include <QNetworkAccessManager>
#include <QObject>
#include <QTemporaryFile>
#include <QUrl>
#include <memory>

class HttpRequest;
struct HttpAnswer;

/// Downloads a set-up program into a directory of the user. The file appears there complete or not at all,
/// under a name that was free, and only if it is a Windows program or package. GUI thread; one download after
/// the other. Destruction cancels.
class SetupDownload : public QObject {
    Q_OBJECT
public:
    static constexpr qint64 MaximumBytes = qint64(16) << 30;

    explicit SetupDownload(QObject* parent);
    ~SetupDownload() override;

    /// Only http and https.
    static bool canFetch(const QUrl& url);

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
    static QString statusText(int status);
    void onProgress(qint64 received, qint64 total);
    void onFinished(const HttpAnswer& answer);
    void save(const HttpAnswer& answer);
    void fail(const QString& errorText, const QString& reason);
    void dropRequest();

    QNetworkAccessManager m_manager;
    std::unique_ptr<QTemporaryFile> m_file;
    std::unique_ptr<HttpRequest> m_request;  ///< writes into the file
    QUrl m_url;
    QString m_directory;
    QString m_appName;
};
