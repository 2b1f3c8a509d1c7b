#pragma once

#include <QPointer>
#include <QTimer>

#include "net/HttpAnswer.h"

class QIODevice;
class QNetworkAccessManager;
class QNetworkRequest;

/// One request to a web server, http or https. Emits finished() exactly once, never before send() has
/// returned. Lives in the thread of its manager, which needs an event loop. The caller owns it; one that is
/// deleted while it runs is aborted and emits nothing.
class HttpRequest : public QObject {
    Q_OBJECT
public:
    struct Limits {
        int wholeMs = 30000;    ///< from send() to the end; 0 is no limit
        int silenceMs = 15000;  ///< without a byte sent or received; 0 is no limit
        qint64 answerBytes = 4 << 20;
    };
    static constexpr int MaxRedirects = 5;

    /// If the manager is deleted first, the request ends as aborted.
    explicit HttpRequest(QNetworkAccessManager* manager, QObject* parent = nullptr);
    ~HttpRequest() override;

    void setLimits(const Limits& limits) { m_limits = limits; }
    /// Before send(): the body goes into this open device while it comes, and HttpAnswer::body stays empty.
    /// The device must outlive the request.
    void setTarget(QIODevice* target) { m_target = target; }

    /// `verb` is a method of HTTP in capitals. Call one of these once. The request brings its address and
    /// headers; unless it says otherwise, the answer is asked for uncompressed. GET and HEAD have no body and
    /// follow redirects within the same scheme or from http to https, unless the request has a redirect
    /// policy.
    void send(const QByteArray& verb, const QNetworkRequest& request, const QByteArray& body = {});
    /// The body is read from a regular file while it is sent.
    void sendFile(const QByteArray& verb, const QNetworkRequest& request, const QString& path);

    /// Emits finished() before it returns, unless it was emitted before.
    void abort();

    /// Null before send(), for an address that is not sent to, and after finished(). Aborting it ends the
    /// request as aborted.
    QNetworkReply* reply() const { return m_reply; }

Q_SIGNALS:
    /// In bytes; `total` is -1 as long as it is not known.
    void uploadProgress(qint64 sent, qint64 total);
    void downloadProgress(qint64 received, qint64 total);
    void finished(const HttpAnswer& answer);

private:
    void start(const QByteArray& verb, QNetworkRequest request, QIODevice* body);
    void connectReply();
    void noteActivity();
    void readAvailable();
    bool take(const QByteArray& bytes);
    void readEnd();
    void closeReply();
    void finish(HttpAnswer::Error error, const QString& errorText);
    void finishLater(HttpAnswer::Error error, const QString& errorText);

    QPointer<QNetworkAccessManager> m_manager;
    QPointer<QNetworkReply> m_reply;
    QIODevice* m_target = nullptr;
    qint64 m_received = 0;
    Limits m_limits;
    QTimer m_wholeTimer;
    QTimer m_silenceTimer;
    HttpAnswer m_answer;
    bool m_isFinished = false;
};
