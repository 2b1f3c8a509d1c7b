#pragma once

#include <QNetworkReply>

#include "store/records/VeskClientAppInfoResponse.h"
#include "store/view/StoreAppGridScrollView.h"

namespace OpenAPI {
class VeskClientDefaultApi;
}

/// What a search in the store finds, loaded page by page. A new search aborts the one before.
class AppStoreSearchWidget : public StoreAppGridScrollView {
    Q_OBJECT
public:
    explicit AppStoreSearchWidget(QWidget* parent = nullptr);

    /// An empty text asks for nothing.
    virtual void search(const QString& text);

public Q_SLOTS:
    void onSearchResult(const OpenAPI::VeskClientAppInfoResponse& summary);
    void onSearchError(QNetworkReply::NetworkError error_type, const QString& error_str);

private:
    void request();
    void onReachedBottom();
    void onRetry();

    OpenAPI::VeskClientDefaultApi* m_api = nullptr;
    OpenAPI::VeskClientPagination m_pagination;
    QString m_keyword;
};
