#pragma once

#include <QList>
#include <QMap>
#include <QNetworkReply>
#include <QObject>
#include <QSet>
#include <optional>

#include "store/client/ServerConfiguration.h"
#include "store/records/VeskClientAppInfoQueryResponse.h"
#include "store/records/VeskClientAppInfoResponse.h"
#include "store/records/VeskClientCategoriesResponse.h"
#include "store/records/VeskClientFieldSort.h"

class QNetworkAccessManager;

namespace OpenAPI {

class VeskClientHttpRequestInput;
class VeskClientHttpRequestWorker;

/// The five operations of the store, one method each. A request ends in the signals of its operation: without
/// an error in opSignal and opSignalFull, else in the four with an E, of which the two called Error have the
/// server's words behind the error text. A worker that comes with a signal lives until control returns to the
/// event loop. Lives in the GUI thread; nothing waits.
class VeskClientDefaultApi : public QObject {
    Q_OBJECT
public:
    explicit VeskClientDefaultApi(QObject* parent = nullptr);

    void downloadYml(const QString& appInfoId);
    void getAppInfo(const QString& appId, const QString& appInfoId);
    void getCategories();
    /// Without a category: of all.
    void listApps(const std::optional<qint32>& category, const VeskClientPagination& pagination,
                  const VeskClientFieldSort& pagesort);
    void search(const QString& keyword, const VeskClientPagination& pagination);

    void setTimeOut(int timeOutMs) { _timeOut = timeOutMs; }
    void setWorkingDirectory(const QString& path) { _workingDirectory = path; }
    /// Not taken over. Null: each request has its own.
    void setNetworkAccessManager(QNetworkAccessManager* manager) { _manager = manager; }
    void addHeaders(const QString& key, const QString& value) { _defaultHeaders.insert(key, value); }
    QMap<QString, QString> defaultHeaders() const { return _defaultHeaders; }
    /// The operations use it from now on; the result is its index for setServerIndex().
    int setNewServer(const QString& operation, const QString& url, const QString& description,
                     const QMap<QString, ServerVariable>& variables);
    void setNewServerForAllOperations(const QString& url, const QString& description = {},
                                      const QMap<QString, ServerVariable>& variables = {});
    void setServerIndex(const QString& operation, int index);

Q_SIGNALS:
    /// Ends the requests under way without a signal of their own.
    void abortRequests();
    void allPendingRequestsCompleted();

    void downloadYmlSignal();
    void downloadYmlSignalFull(OpenAPI::VeskClientHttpRequestWorker* worker);
    void downloadYmlSignalE(QNetworkReply::NetworkError error_type, const QString& error_str);
    void downloadYmlSignalEFull(OpenAPI::VeskClientHttpRequestWorker* worker,
                                QNetworkReply::NetworkError error_type, const QString& error_str);
    void downloadYmlSignalError(QNetworkReply::NetworkError error_type, const QString& error_str);
    void downloadYmlSignalErrorFull(OpenAPI::VeskClientHttpRequestWorker* worker,
                                    QNetworkReply::NetworkError error_type, const QString& error_str);

    void getAppInfoSignal(const OpenAPI::VeskClientAppInfoQueryResponse& summary);
    void getAppInfoSignalFull(OpenAPI::VeskClientHttpRequestWorker* worker,
                              const OpenAPI::VeskClientAppInfoQueryResponse& summary);
    void getAppInfoSignalE(const OpenAPI::VeskClientAppInfoQueryResponse& summary,
                           QNetworkReply::NetworkError error_type, const QString& error_str);
    void getAppInfoSignalEFull(OpenAPI::VeskClientHttpRequestWorker* worker,
                               QNetworkReply::NetworkError error_type, const QString& error_str);
    void getAppInfoSignalError(const OpenAPI::VeskClientAppInfoQueryResponse& summary,
                               QNetworkReply::NetworkError error_type, const QString& error_str);
    void getAppInfoSignalErrorFull(OpenAPI::VeskClientHttpRequestWorker* worker,
                                   QNetworkReply::NetworkError error_type, const QString& error_str);

    void getCategoriesSignal(const OpenAPI::VeskClientCategoriesResponse& summary);
    void getCategoriesSignalFull(OpenAPI::VeskClientHttpRequestWorker* worker,
                                 const OpenAPI::VeskClientCategoriesResponse& summary);
    void getCategoriesSignalE(const OpenAPI::VeskClientCategoriesResponse& summary,
                              QNetworkReply::NetworkError error_type, const QString& error_str);
    void getCategoriesSignalEFull(OpenAPI::VeskClientHttpRequestWorker* worker,
                                  QNetworkReply::NetworkError error_type, const QString& error_str);
    void getCategoriesSignalError(const OpenAPI::VeskClientCategoriesResponse& summary,
                                  QNetworkReply::NetworkError error_type, const QString& error_str);
    void getCategoriesSignalErrorFull(OpenAPI::VeskClientHttpRequestWorker* worker,
                                      QNetworkReply::NetworkError error_type, const QString& error_str);

    void listAppsSignal(const OpenAPI::VeskClientAppInfoResponse& summary);
    void listAppsSignalFull(OpenAPI::VeskClientHttpRequestWorker* worker,
                            const OpenAPI::VeskClientAppInfoResponse& summary);
    void listAppsSignalE(const OpenAPI::VeskClientAppInfoResponse& summary,
                         QNetworkReply::NetworkError error_type, const QString& error_str);
    void listAppsSignalEFull(OpenAPI::VeskClientHttpRequestWorker* worker,
                             QNetworkReply::NetworkError error_type, const QString& error_str);
    void listAppsSignalError(const OpenAPI::VeskClientAppInfoResponse& summary,
                             QNetworkReply::NetworkError error_type, const QString& error_str);
    void listAppsSignalErrorFull(OpenAPI::VeskClientHttpRequestWorker* worker,
                                 QNetworkReply::NetworkError error_type, const QString& error_str);

    void searchSignal(const OpenAPI::VeskClientAppInfoResponse& summary);
    void searchSignalFull(OpenAPI::VeskClientHttpRequestWorker* worker,
                          const OpenAPI::VeskClientAppInfoResponse& summary);
    void searchSignalE(const OpenAPI::VeskClientAppInfoResponse& summary,
                       QNetworkReply::NetworkError error_type, const QString& error_str);
    void searchSignalEFull(OpenAPI::VeskClientHttpRequestWorker* worker,
                           QNetworkReply::NetworkError error_type, const QString& error_str);
    void searchSignalError(const OpenAPI::VeskClientAppInfoResponse& summary,
                           QNetworkReply::NetworkError error_type, const QString& error_str);
    void searchSignalErrorFull(OpenAPI::VeskClientHttpRequestWorker* worker,
                               QNetworkReply::NetworkError error_type, const QString& error_str);

private:
    template <class Response>
    struct Signals;
    using Worker = VeskClientHttpRequestWorker;
    using Completion = void (VeskClientDefaultApi::*)(Worker* worker);

    QString addressOf(const QString& operation, const QString& path) const;
    void start(const QString& url, Completion completion);
    template <class Response>
    void complete(Worker* worker, const Signals<Response>& tell);
    void onDownloadYml(Worker* worker);
    void onGetAppInfo(Worker* worker);
    void onGetCategories(Worker* worker);
    void onListApps(Worker* worker);
    void onSearch(Worker* worker);
    void forget(Worker* worker);

    QMap<QString, QList<ServerConfiguration>> _serverConfigs;
    QMap<QString, int> _serverIndices;
    QMap<QString, QString> _defaultHeaders;
    int _timeOut = 0;
    QString _workingDirectory;
    QNetworkAccessManager* _manager = nullptr;
    bool _isResponseCompressionEnabled = false;
    bool _isRequestCompressionEnabled = false;
    QSet<Worker*> m_pending;
};

}  // namespace OpenAPI
