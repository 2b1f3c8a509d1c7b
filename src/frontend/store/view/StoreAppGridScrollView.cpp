#include "store/view/StoreAppGridScrollView.h"

#include <QApplication>
#include <QPushButton>
#include <QVBoxLayout>

#include "fenk/controls/FloatingMessage.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "store/view/AppStoreItemListView.h"
#include "store/view/AppStoreItemModel.h"
#include "store/view/LoadingWidget.h"
#include "store/view/RefreshWidget.h"
#include "store/view/StoreImages.h"

using namespace Fenk;

namespace {
constexpr int FloatingMs = 1500;
}

StoreAppGridScrollView::StoreAppGridScrollView(QWidget* parent)
    : QStackedWidget(parent),
      m_list(new AppStoreItemListView),
      m_empty(new ListPlaceholder({}, tr("No applications were found"))) {
    m_list->setObjectName("appgrid_widget");
    m_list->setAccessibleName("appgrid_widget");
    m_empty->setObjectName("appstore_empty");
    showEmptyIcon();
    connect(Theme::instance(), &Theme::themeTypeChanged, this, &StoreAppGridScrollView::showEmptyIcon);
    auto* refresh = new RefreshWidget;
    addWidget(m_list);
    addWidget(new LoadingWidget);
    addWidget(refresh);
    addWidget(m_empty);
    connect(m_list, &LoadingListView::reachedBottom, this, &StoreAppGridScrollView::reachedBottom);
    connect(refresh, &RefreshWidget::pressed, this, &StoreAppGridScrollView::retry);
}

void StoreAppGridScrollView::showEmptyIcon() {
    m_empty->setIcon(QIcon(
        storeImage(Theme::instance()->isDark() ? "appstorelist_empty_dark.svg" : "appstorelist_empty.svg")));
}

void StoreAppGridScrollView::setPage(int index) {
    const bool hadFocus = isAncestorOf(QApplication::focusWidget());
    setCurrentIndex(index);
    // The page that had the focus is hidden.
    if (hadFocus && (index == Grid || index == Failed))
        focusApps();
}

void StoreAppGridScrollView::setBottomLoading(bool loading) {
    m_list->setBottomLoading(loading);
}

bool StoreAppGridScrollView::isBottomLoading() const {
    return m_list->isBottomLoading();
}

void StoreAppGridScrollView::scrollToTop() {
    m_list->scrollToTop();
}

void StoreAppGridScrollView::appendApps(const QList<AppStoreViewUtils::StoreAppModelData>& apps) {
    m_list->appModel()->appendApps(apps);
}

void StoreAppGridScrollView::clearApps() {
    m_list->appModel()->clearApps();
}

int StoreAppGridScrollView::appCount() const {
    return m_list->appModel()->rowCount();
}

void StoreAppGridScrollView::showFloating(const QString& text) {
    FloatingMessage::show(this, QIcon(storeImage("warning.svg")), text, FloatingMs);
}

void StoreAppGridScrollView::setEmptyText(const QString& text) {
    m_empty->setText(text);
}

void StoreAppGridScrollView::focusApps() {
    if (currentIndex() == Grid)
        m_list->focusCurrent();
    else if (currentIndex() == Failed)
        currentWidget()->setFocus(Qt::TabFocusReason);
}
