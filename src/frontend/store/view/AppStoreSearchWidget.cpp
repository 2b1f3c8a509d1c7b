#include "store/view/AppStoreSearchWidget.h"

#include <QDebug>

#include "store/client/StoreClient.h"
#include "store/client/VeskClientDefaultApi.h"

using OpenAPI::VeskClientDefaultApi;

namespace {
constexpr int CodeGood = 200;
constexpr int PageSize = 20;
}  // namespace

AppStoreSearchWidget::AppStoreSearchWidget(QWidget* parent) : StoreAppGridScrollView(parent) {
    setObjectName("appstore_search");
    m_pagination.setPageIndex(1);
    m_pagination.setPageSize(PageSize);
    setEmptyText(tr("The store has no such application"));
    connect(this, &StoreAppGridScrollView::reachedBottom, this, &AppStoreSearchWidget::onReachedBottom);
    connect(this, &StoreAppGridScrollView::retry, this, &AppStoreSearchWidget::onRetry);
}

void AppStoreSearchWidget::search(const QString& text) {
    setPage(Loading);
    scrollToTop();
    if (text.isEmpty())
        return;
    AppStoreViewUtils::writeEvent("search_app", {{"search_text", text}});
    m_pagination.setPageIndex(1);
    m_keyword = text;
    request();
}

void AppStoreSearchWidget::request() {
    if (!m_api) {
        m_api = makeStoreClient({}, this);
        connect(m_api, &VeskClientDefaultApi::searchSignal, this, &AppStoreSearchWidget::onSearchResult);
        connect(m_api, &VeskClientDefaultApi::searchSignalError, this,
                [this](const OpenAPI::VeskClientAppInfoResponse&, QNetworkReply::NetworkError type,
                       const QString& text) { onSearchError(type, text); });
    }
    Q_EMIT m_api->abortRequests();
    m_api->search(m_keyword, m_pagination);
}

void AppStoreSearchWidget::onReachedBottom() {
    if (isBottomLoading())
        return;
    setBottomLoading(true);
    m_pagination.setPageIndex(m_pagination.getPageIndex() + 1);
    request();
}

void AppStoreSearchWidget::onRetry() {
    setPage(Loading);
    request();
}

void AppStoreSearchWidget::onSearchResult(const OpenAPI::VeskClientAppInfoResponse& summary) {
    setBottomLoading(false);
    if (summary.getCode() != CodeGood) {
        qWarning().noquote() << "failed to search app: " + AppStoreViewUtils::oneLine(summary.getMsg());
        setPage(Failed);
        return;
    }
    const auto apps = AppStoreViewUtils::toModelData(summary.getData().getList());
    if (m_pagination.getPageIndex() == 1) {
        clearApps();
        appendApps(apps);
        setPage(apps.isEmpty() ? Empty : Grid);
        return;
    }
    appendApps(apps);
    setPage(Grid);
    if (apps.isEmpty()) {
        m_pagination.setPageIndex(m_pagination.getPageIndex() - 1);  // asked for again at the next end
        showFloating(tr("No more data to fetch"));
    }
}

void AppStoreSearchWidget::onSearchError(QNetworkReply::NetworkError error_type, const QString& error_str) {
    qWarning().noquote() << "failed to search app: " + AppStoreViewUtils::oneLine(error_str) << error_type;
    setBottomLoading(false);
    setPage(Failed);
}
