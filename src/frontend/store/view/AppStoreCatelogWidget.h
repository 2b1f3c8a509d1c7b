#pragma once

#include <QMap>
#include <QNetworkReply>
#include <QWidget>
#include <optional>

#include "store/records/VeskClientAppInfoResponse.h"
#include "store/records/VeskClientCategoriesResponse.h"
#include "store/records/VeskClientFieldSort.h"

class QComboBox;
class QPushButton;
class StoreAppGridScrollView;

namespace Fenk {
class Label;
}
namespace OpenAPI {
class VeskClientDefaultApi;
}

/// The catalogue of the store: all applications or those of a category, in one of three orders, loaded page
/// by page. Asks for nothing before start(). A new request aborts the one before.
class AppStoreCatelogWidget : public QWidget {
    Q_OBJECT
public:
    explicit AppStoreCatelogWidget(QWidget* parent = nullptr);

    /// Sends the first requests: for applications and for the categories.
    void start();
    /// Does nothing for an id that is none of the categories'.
    void selectCategory(int id);
    /// Shows the applications of every category again.
    void leaveCategory();
    void focusApps();
    StoreAppGridScrollView* grid() const { return m_grid; }

Q_SIGNALS:
    void categoriesFetched(const QList<OpenAPI::VeskClientCategoryInfo>& categories);
    /// No category is chosen any more.
    void categoryLeft();

public Q_SLOTS:
    void onGetCategoriesDone(const OpenAPI::VeskClientCategoriesResponse& summary);
    void onListAppsDone(const OpenAPI::VeskClientAppInfoResponse& summary);
    void onNetworkError();
    void onRetry();
    void onLoadNextPage();
    void onSortFiledChanged(int index);

private:
    QWidget* makeHead();
    OpenAPI::VeskClientDefaultApi* api();
    void request();
    void requestFresh();
    void showPage(int page);

    OpenAPI::VeskClientDefaultApi* m_api = nullptr;
    QMap<int, QString> m_categories;
    OpenAPI::VeskClientPagination m_pagination;
    OpenAPI::VeskClientFieldSort m_sortField;
    std::optional<int> m_category;
    bool m_lacksCategories = true;
    bool m_resetOnNextResult = false;
    bool m_hasFailed = false;  ///< the retry page stays in front until the next request
    Fenk::Label* m_header = nullptr;
    QPushButton* m_all = nullptr;  ///< leaves the category; hidden without one
    QComboBox* m_sort = nullptr;
    StoreAppGridScrollView* m_grid;
};
