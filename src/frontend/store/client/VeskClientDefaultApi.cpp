#include "store/client/VeskClientDefaultApi.h"

#include "store/client/VeskClientHttpRequestInput.h"
#include "store/client/VeskClientHttpRequestWorker.h"
#include "store/client/VeskClientParameters.h"
#include "store/records/VeskClientRecords.h"

namespace OpenAPI {

namespace {

const char* const Operations[] = {"downloadYml", "getAppInfo", "getCategories", "listApps", "search"};

const QStringList& headerOrder() {
    static const QStringList order = {"X-VESK-Language",
                                      "X-VESK-Region",
                                      "X-VESK-OSBuild",
                                      "X-VESK-IsWayland",
                                      "X-VESK-BaselineMainVersion",
                                      "X-VESK-ClientVersion",
                                      "X-VESK-BaselineVersion",
                                      "X-VESK-Arch",
                                      "X-VESK-Platform"};
    return order;
}

}  // namespace

/// The six signals in which an operation ends.
template <class Response>
struct VeskClientDefaultApi::Signals {
    using Api = VeskClientDefaultApi;
    using Error = QNetworkReply::NetworkError;

    void (Api::*good)(const Response&);
    void (Api::*goodFull)(Worker*, const Response&);
    void (Api::*bad)(const Response&, Error, const QString&);
    void (Api::*badFull)(Worker*, Error, const QString&);
    void (Api::*worded)(const Response&, Error, const QString&);
    void (Api::*wordedFull)(Worker*, Error, const QString&);
};

VeskClientDefaultApi::VeskClientDefaultApi(QObject* parent) : QObject(parent) {
    registerVeskClientRecords();
    qRegisterMetaType<VeskClientHttpRequestWorker*>("OpenAPI::VeskClientHttpRequestWorker*");
    setNewServerForAllOperations(QStringLiteral("http://localhost"));
}

int VeskClientDefaultApi::setNewServer(const QString& operation, const QString& url,
                                       const QString& description,
                                       const QMap<QString, ServerVariable>& variables) {
    auto& servers = _serverConfigs[operation];
    servers.append(ServerConfiguration(url, description, variables));
    return servers.size() - 1;
}

void VeskClientDefaultApi::setNewServerForAllOperations(const QString& url, const QString& description,
                                                        const QMap<QString, ServerVariable>& variables) {
    for (const char* operation : Operations) {
        _serverConfigs[operation] = {ServerConfiguration(url, description, variables)};
        _serverIndices[operation] = 0;
    }
}

void VeskClientDefaultApi::setServerIndex(const QString& operation, int index) {
    if (index >= 0 && index < _serverConfigs.value(operation).size())
        _serverIndices[operation] = index;
}

QString VeskClientDefaultApi::addressOf(const QString& operation, const QString& path) const {
    return _serverConfigs[operation].at(_serverIndices[operation]).URL() + path;
}

void VeskClientDefaultApi::downloadYml(const QString& appInfoId) {
    QString url = addressOf("downloadYml", "/vesk/client/downloadYml/{appInfoId}");
    VeskClientParameters::setPathParameter(&url, "appInfoId", appInfoId);
    start(url, &VeskClientDefaultApi::onDownloadYml);
}

void VeskClientDefaultApi::getAppInfo(const QString& appId, const QString& appInfoId) {
    QString url = addressOf("getAppInfo", "/vesk/client/appInfo");
    VeskClientParameters::addQueryParameter(&url, "appId", appId);
    VeskClientParameters::addQueryParameter(&url, "appInfoId", appInfoId);
    start(url, &VeskClientDefaultApi::onGetAppInfo);
}

void VeskClientDefaultApi::getCategories() {
    start(addressOf("getCategories", "/vesk/client/categories"), &VeskClientDefaultApi::onGetCategories);
}

void VeskClientDefaultApi::listApps(const std::optional<qint32>& category,
                                    const VeskClientPagination& pagination,
                                    const VeskClientFieldSort& pagesort) {
    QString url = addressOf("listApps", "/vesk/client/apps");
    if (category)
        VeskClientParameters::addQueryParameter(&url, "category", toStringValue(*category));
    VeskClientParameters::addQueryParameter(&url, "pagination", pagination.asJsonObject());
    VeskClientParameters::addQueryParameter(&url, "pagesort", pagesort.asJsonObject());
    start(url, &VeskClientDefaultApi::onListApps);
}

void VeskClientDefaultApi::search(const QString& keyword, const VeskClientPagination& pagination) {
    QString url = addressOf("search", "/vesk/client/search");
    VeskClientParameters::addQueryParameter(&url, "keyword", keyword);
    VeskClientParameters::addQueryParameter(&url, "pagination", pagination.asJsonObject());
    start(url, &VeskClientDefaultApi::onSearch);
}

void VeskClientDefaultApi::start(const QString& url, Completion completion) {
    auto* worker = new Worker(this, _manager);
    worker->setTimeOut(_timeOut);
    worker->setWorkingDirectory(_workingDirectory);
    worker->setResponseCompressionEnabled(_isResponseCompressionEnabled);
    worker->setRequestCompressionEnabled(_isRequestCompressionEnabled);
    m_pending.insert(worker);
    connect(worker, &Worker::on_execution_finished, this, completion);
    connect(worker, &QObject::destroyed, this, [this, worker] { forget(worker); });
    connect(this, &VeskClientDefaultApi::abortRequests, worker, [this, worker] {
        worker->disconnect(this);
        worker->deleteLater();
        forget(worker);
    });
    VeskClientHttpRequestInput input(url);
    input.headers = _defaultHeaders;
    input.header_order = headerOrder();
    worker->execute(input);
}

void VeskClientDefaultApi::forget(Worker* worker) {
    if (m_pending.remove(worker) && m_pending.isEmpty())
        Q_EMIT allPendingRequestsCompleted();
}

template <class Response>
void VeskClientDefaultApi::complete(Worker* worker, const Signals<Response>& tell) {
    worker->deleteLater();
    const auto error = worker->error_type;
    const QString text = worker->error_str;
    if (error == QNetworkReply::NoError) {
        const Response summary(QString::fromUtf8(worker->response));
        Q_EMIT(this->*tell.good)(summary);
        Q_EMIT(this->*tell.goodFull)(worker, summary);
    } else {
        const QString worded = QString("%1, %2").arg(text, QString::fromUtf8(worker->response));
        Q_EMIT(this->*tell.bad)({}, error, text);
        Q_EMIT(this->*tell.badFull)(worker, error, text);
        Q_EMIT(this->*tell.worded)({}, error, worded);
        Q_EMIT(this->*tell.wordedFull)(worker, error, worded);
    }
    forget(worker);
}

void VeskClientDefaultApi::onDownloadYml(Worker* worker) {
    worker->deleteLater();
    const auto error = worker->error_type;
    if (error == QNetworkReply::NoError) {
        Q_EMIT downloadYmlSignal();
        Q_EMIT downloadYmlSignalFull(worker);
    } else {
        const QString worded = QString("%1, %2").arg(worker->error_str, QString::fromUtf8(worker->response));
        Q_EMIT downloadYmlSignalE(error, worker->error_str);
        Q_EMIT downloadYmlSignalEFull(worker, error, worker->error_str);
        Q_EMIT downloadYmlSignalError(error, worded);
        Q_EMIT downloadYmlSignalErrorFull(worker, error, worded);
    }
    forget(worker);
}

void VeskClientDefaultApi::onGetAppInfo(Worker* worker) {
    complete<VeskClientAppInfoQueryResponse>(
        worker,
        {&VeskClientDefaultApi::getAppInfoSignal, &VeskClientDefaultApi::getAppInfoSignalFull,
         &VeskClientDefaultApi::getAppInfoSignalE, &VeskClientDefaultApi::getAppInfoSignalEFull,
         &VeskClientDefaultApi::getAppInfoSignalError, &VeskClientDefaultApi::getAppInfoSignalErrorFull});
}

void VeskClientDefaultApi::onGetCategories(Worker* worker) {
    complete<VeskClientCategoriesResponse>(
        worker, {&VeskClientDefaultApi::getCategoriesSignal, &VeskClientDefaultApi::getCategoriesSignalFull,
                 &VeskClientDefaultApi::getCategoriesSignalE, &VeskClientDefaultApi::getCategoriesSignalEFull,
                 &VeskClientDefaultApi::getCategoriesSignalError,
                 &VeskClientDefaultApi::getCategoriesSignalErrorFull});
}

void VeskClientDefaultApi::onListApps(Worker* worker) {
    complete<VeskClientAppInfoResponse>(
        worker, {&VeskClientDefaultApi::listAppsSignal, &VeskClientDefaultApi::listAppsSignalFull,
                 &VeskClientDefaultApi::listAppsSignalE, &VeskClientDefaultApi::listAppsSignalEFull,
                 &VeskClientDefaultApi::listAppsSignalError, &VeskClientDefaultApi::listAppsSignalErrorFull});
}

void VeskClientDefaultApi::onSearch(Worker* worker) {
    complete<VeskClientAppInfoResponse>(
        worker, {&VeskClientDefaultApi::searchSignal, &VeskClientDefaultApi::searchSignalFull,
                 &VeskClientDefaultApi::searchSignalE, &VeskClientDefaultApi::searchSignalEFull,
                 &VeskClientDefaultApi::searchSignalError, &VeskClientDefaultApi::searchSignalErrorFull});
}

}  // namespace OpenAPI
