#include "store/view/AppStoreView.h"

#include <QShowEvent>

#include "store/view/AppStoreCatelogWidget.h"
#include "store/view/AppStoreSearchWidget.h"

namespace {
constexpr int SearchLimitMs = 600;
constexpr int StartDelayMs = 10;
}  // namespace

AppStoreView::AppStoreView(QWidget* parent) : QStackedWidget(parent) {
    setObjectName("appstoreview");
    setAccessibleName("appstoreview");
    setCatelogWidget(new AppStoreCatelogWidget);
    setSearchWidget(new AppStoreSearchWidget);
    m_searchLimit.setSingleShot(true);
    m_searchLimit.setInterval(SearchLimitMs);
    connect(&m_searchLimit, &QTimer::timeout, this, &AppStoreView::onSearchLimitTimeout);
}

void AppStoreView::replace(QWidget* before, QWidget* now, int place) {
    const bool isCurrent = before && currentWidget() == before;
    insertWidget(place, now);
    if (isCurrent)
        setCurrentWidget(now);
    if (!before)
        return;
    removeWidget(before);
    before->deleteLater();
}

void AppStoreView::setCatelogWidget(AppStoreCatelogWidget* catelog) {
    replace(m_catelog, catelog, 0);
    m_catelog = catelog;
    connect(m_catelog, &AppStoreCatelogWidget::categoriesFetched, this, &AppStoreView::categoriesFetched);
    connect(m_catelog, &AppStoreCatelogWidget::categoryLeft, this, &AppStoreView::categoryLeft);
    if (m_wasShown)
        m_catelog->start();
}

void AppStoreView::setSearchWidget(AppStoreSearchWidget* search) {
    replace(m_search, search, 1);
    m_search = search;
}

void AppStoreView::showEvent(QShowEvent* event) {
    QStackedWidget::showEvent(event);
    if (event->spontaneous())
        return;
    setCurrentWidget(m_catelog);
    if (!m_searchText.isEmpty())
        m_searchLimit.start();
    if (m_wasShown)
        return;
    m_wasShown = true;
    // After the page is painted.
    QTimer::singleShot(StartDelayMs, this, [this] { m_catelog->start(); });
}

void AppStoreView::onSearchTextChanged(const QString& searchText) {
    m_searchText = searchText;
    m_searchLimit.start();
}

void AppStoreView::onSearchLimitTimeout() {
    if (m_searchText.isEmpty()) {
        setCurrentWidget(m_catelog);
        return;
    }
    setCurrentWidget(m_search);
    m_search->search(m_searchText);
}

void AppStoreView::selectCategory(int id) {
    m_searchLimit.stop();
    setCurrentWidget(m_catelog);
    m_catelog->selectCategory(id);
}

void AppStoreView::focusApps() {
    if (currentWidget() == m_search)
        m_search->focusApps();
    else
        m_catelog->focusApps();
}
