#pragma once

#include <QMap>
#include <QNetworkReply>
#include <QObject>

#include "net/HttpAnswer.h"
#include "store/client/HttpFileElement.h"

class HttpRequest;
class QNetworkAccessManager;

namespace OpenAPI {

class VeskClientHttpRequestInput;

/// Does one request to the store. Emits on_execution_finished exactly once, unless it is deleted before. An
/// answer may have 16 MiB. Lives in the GUI thread.
class VeskClientHttpRequestWorker : public QObject {
    Q_OBJECT
public:
    static constexpr int MaxAnswerBytes = 16 << 20;

    /// Makes a manager of its own when there is none.
    explicit VeskClientHttpRequestWorker(QObject* parent = nullptr, QNetworkAccessManager* manager = nullptr);

    /// Milliseconds for the whole request; 0 is no limit.
    void setTimeOut(int timeOutMs) { _timeOut = timeOutMs; }
    /// Where files of an answer are stored; without one they stay in the response.
    void setWorkingDirectory(const QString& path) { workingDirectory = path; }
    void setResponseCompressionEnabled(bool isEnabled) { isResponseCompressionEnabled = isEnabled; }
    void setRequestCompressionEnabled(bool isEnabled) { isRequestCompressionEnabled = isEnabled; }

    void execute(const VeskClientHttpRequestInput& input);

    QMap<QString, QString> getResponseHeaders() const { return headers; }
    HttpFileElement getHttpFileElement(const QString& field = QStringLiteral("attachment")) const {
        return files.value(field);
    }

    QByteArray response;
    QNetworkReply::NetworkError error_type = QNetworkReply::NoError;
    QString error_str;
    QMap<QString, QString> headers;  ///< of the answer; of a repeated one the last
    int httpResponse = 0;            ///< the status
    QMap<QString, QString> multiPartFields;
    QMap<QString, HttpFileElement> files;

Q_SIGNALS:
    void on_execution_finished(OpenAPI::VeskClientHttpRequestWorker* worker);
    /// Bytes; the total is -1 while it is not known.
    void downloadProgress(qint64 received, qint64 total);

private:
    /// What is left of the time-out is `timeOutMs`.
    void send(const VeskClientHttpRequestInput& input, int timeOutMs);
    void onFinished(const HttpAnswer& answer);
    void takeBody(const QByteArray& body);

    QNetworkAccessManager* m_manager;
    HttpRequest* m_request = nullptr;
    QString workingDirectory;
    int _timeOut = 0;
    bool isResponseCompressionEnabled = false;
    bool isRequestCompressionEnabled = false;
};

}  // namespace OpenAPI
