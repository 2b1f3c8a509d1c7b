#include "store/view/AppStoreCatelogWidget.h"

#include <QComboBox>
#include <QDebug>
#include <QHBoxLayout>
#include <QListView>
#include <QMetaEnum>
#include <QPushButton>

#include "fenk/controls/Label.h"
#include "fenk/style/Tokens.h"
#include "store/client/StoreClient.h"
#include "store/client/VeskClientDefaultApi.h"
#include "store/view/StoreAppGridScrollView.h"

using namespace Fenk;
using OpenAPI::VeskClientDefaultApi;
using Page = StoreAppGridScrollView::Page;

namespace {

constexpr int CodeGood = 200;
constexpr int PageSize = 20;
constexpr int MaximumCategories = 200;
constexpr int SortMinWidth = 64;
constexpr int SortListMinWidth = 240;
constexpr int SortVisibleItems = 12;
const char Descending[] = "desc";

}  // namespace

AppStoreCatelogWidget::AppStoreCatelogWidget(QWidget* parent)
    : QWidget(parent), m_grid(new StoreAppGridScrollView) {
    setObjectName("appstore_catelog");
    m_pagination.setPageIndex(1);
    m_pagination.setPageSize(PageSize);
    m_sortField.setField(AppStoreViewUtils::sortFields().first().value);
    m_sortField.setSort(Descending);
    m_grid->setObjectName("appstore_catelog_appgrid");
    m_grid->setAccessibleName("appstore_catelog_appgrid");
    m_grid->setPage(Page::Loading);
    m_grid->setEmptyText(tr("There are no applications here yet"));
    auto* result = new QWidget;
    result->setObjectName("appstore_catelog_resultpage");
    result->setAccessibleName("appstore_catelog_resultpage");
    auto* body = new QVBoxLayout(result);
    body->setContentsMargins(0, 0, 0, 0);
    body->addWidget(m_grid);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(makeHead());
    layout->addWidget(result, 1);
    connect(m_grid, &StoreAppGridScrollView::reachedBottom, this, &AppStoreCatelogWidget::onLoadNextPage);
    connect(m_grid, &StoreAppGridScrollView::retry, this, &AppStoreCatelogWidget::onRetry);
}

QWidget* AppStoreCatelogWidget::makeHead() {
    auto* head = new QWidget;
    m_header = new Label(tr("All Apps"), Label::Heading);
    m_header->setObjectName("appstore_catelog_header");
    m_header->setAccessibleName("appstore_catelog_header");
    m_header->setElided(true);
    m_all = new QPushButton(tr("All Apps"));
    m_all->setObjectName("appstore_catelog_all");
    m_all->setToolTip(tr("Show the applications of every category"));
    m_all->hide();
    connect(m_all, &QPushButton::clicked, this, &AppStoreCatelogWidget::leaveCategory);
    m_sort = new QComboBox;
    m_sort->setObjectName("appstore_catelog_sort");
    m_sort->setAccessibleName(tr("Sort by"));
    m_sort->setMinimumWidth(SortMinWidth);
    m_sort->setMaxVisibleItems(SortVisibleItems);
    m_sort->view()->setMinimumWidth(SortListMinWidth);
    for (const auto& field : AppStoreViewUtils::sortFields())
        m_sort->addItem(tr(field.text), QString(field.value));
    connect(m_sort, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &AppStoreCatelogWidget::onSortFiledChanged);
    auto* row = new QHBoxLayout(head);
    row->setContentsMargins(Tokens::Space16, Tokens::Space8, Tokens::Space16, Tokens::Space8);
    row->addWidget(m_header, 1);
    row->addWidget(m_all);
    row->addWidget(m_sort);
    return head;
}

VeskClientDefaultApi* AppStoreCatelogWidget::api() {
    if (m_api)
        return m_api;
    m_api = makeStoreClient({}, this);
    connect(m_api, &VeskClientDefaultApi::listAppsSignal, this, &AppStoreCatelogWidget::onListAppsDone);
    connect(m_api, &VeskClientDefaultApi::getCategoriesSignal, this,
            &AppStoreCatelogWidget::onGetCategoriesDone);
    connect(
        m_api, &VeskClientDefaultApi::listAppsSignalError, this,
        [this](const OpenAPI::VeskClientAppInfoResponse&, QNetworkReply::NetworkError, const QString& text) {
            qWarning().noquote() << "failed to list apps: " + AppStoreViewUtils::oneLine(text);
            onNetworkError();
        });
    connect(m_api, &VeskClientDefaultApi::getCategoriesSignalError, this,
            [this](const OpenAPI::VeskClientCategoriesResponse&, QNetworkReply::NetworkError type,
                   const QString& text) {
                const char* name = QMetaEnum::fromType<QNetworkReply::NetworkError>().valueToKey(type);
                qWarning().noquote() << QString("failed to get categories: %1, %2")
                                            .arg(name, AppStoreViewUtils::oneLine(text));
                onNetworkError();
            });
    return m_api;
}

void AppStoreCatelogWidget::start() {
    showPage(Page::Loading);
    request();
}

void AppStoreCatelogWidget::request() {
    Q_EMIT api()->abortRequests();
    api()->listApps(m_category, m_pagination, m_sortField);
    if (m_lacksCategories)
        api()->getCategories();  // what was under way has been aborted, too
}

/// A request whose result replaces the list.
void AppStoreCatelogWidget::requestFresh() {
    m_hasFailed = false;
    showPage(Page::Loading);
    m_grid->scrollToTop();
    m_grid->setBottomLoading(false);
    m_pagination.setPageIndex(1);
    m_resetOnNextResult = true;
    request();
}

void AppStoreCatelogWidget::showPage(int page) {
    m_grid->setPage(m_hasFailed ? int(Page::Failed) : page);
}

void AppStoreCatelogWidget::onSortFiledChanged(int index) {
    const auto& fields = AppStoreViewUtils::sortFields();
    if (index < 0 || index >= fields.size())
        return;
    const QString field = fields[index].value;
    AppStoreViewUtils::writeEvent("query_field", {{"value", field}});
    m_sortField.setField(field);
    m_sortField.setSort(Descending);
    requestFresh();
}

void AppStoreCatelogWidget::selectCategory(int id) {
    const auto category = m_categories.constFind(id);
    if (category == m_categories.constEnd())
        return;
    AppStoreViewUtils::writeEvent("query_category",
                                  {{"categoryId", QString::number(id)}, {"category", *category}});
    m_category = id;
    m_sortField.setSort(Descending);
    m_header->setText(AppStoreViewUtils::oneLine(*category));
    m_all->show();
    requestFresh();
}

void AppStoreCatelogWidget::leaveCategory() {
    if (!m_category)
        return;
    m_category.reset();
    m_header->setText(tr("All Apps"));
    m_all->hide();
    focusApps();
    Q_EMIT categoryLeft();
    requestFresh();
}

void AppStoreCatelogWidget::onLoadNextPage() {
    if (m_grid->isBottomLoading())
        return;
    m_grid->setBottomLoading(true);
    m_pagination.setPageIndex(m_pagination.getPageIndex() + 1);
    request();
}

void AppStoreCatelogWidget::onListAppsDone(const OpenAPI::VeskClientAppInfoResponse& summary) {
    m_grid->setBottomLoading(false);
    if (summary.getCode() != CodeGood) {
        qWarning().noquote() << "list apps error: " + AppStoreViewUtils::oneLine(summary.getMsg());
        onNetworkError();
        return;
    }
    if (m_resetOnNextResult)
        m_grid->clearApps();
    m_resetOnNextResult = false;
    const auto apps = AppStoreViewUtils::toModelData(summary.getData().getList());
    m_grid->appendApps(apps);
    const bool isFirst = m_pagination.getPageIndex() == 1;
    showPage(apps.isEmpty() && isFirst ? Page::Empty : Page::Grid);
    if (apps.isEmpty() && !isFirst) {
        m_pagination.setPageIndex(m_pagination.getPageIndex() - 1);  // asked for again at the next end
        m_grid->showFloating(tr("No more data to fetch"));
    }
}

void AppStoreCatelogWidget::onGetCategoriesDone(const OpenAPI::VeskClientCategoriesResponse& summary) {
    if (summary.getCode() != CodeGood) {
        qWarning().noquote() << "get categories error: " + AppStoreViewUtils::oneLine(summary.getMsg());
        onNetworkError();
        return;
    }
    m_lacksCategories = false;
    QList<OpenAPI::VeskClientCategoryInfo> categories;
    for (const auto& category : summary.getData().getList()) {
        const bool isUsable = category.is_id_Valid() && !category.getName().trimmed().isEmpty();
        if (!isUsable || categories.size() == MaximumCategories) {
            qWarning() << "the store sent a category without id or name, or too many of them";
            if (isUsable)
                break;
            continue;
        }
        m_categories.insert(category.getId(), category.getName());
        categories.append(category);
    }
    Q_EMIT categoriesFetched(categories);
}

void AppStoreCatelogWidget::onNetworkError() {
    m_hasFailed = true;
    m_grid->setBottomLoading(false);
    showPage(Page::Failed);
}

void AppStoreCatelogWidget::onRetry() {
    m_hasFailed = false;
    m_lacksCategories = true;
    if (m_pagination.getPageIndex() == 1)
        m_resetOnNextResult = true;  // the list may have come when the categories failed
    showPage(Page::Loading);
    request();
}

void AppStoreCatelogWidget::focusApps() {
    m_grid->focusApps();
}
