#include "shell/IndexView.h"

#include <QHBoxLayout>
#include <QStackedWidget>

#include "shell/SearchWidget.h"
#include "shell/adding/AddAppsWidget.h"
#include "shell/library/AppLocalView.h"
#include "store/view/AppStoreView.h"

IndexView::IndexView(SearchWidget* search, QWidget* parent)
    : QWidget(parent), m_search(search), m_sidebar(new SidebarView), m_pages(new QStackedWidget) {
    setObjectName("index_view");
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_sidebar);
    layout->addWidget(m_pages, 1);
    connect(m_sidebar, &SidebarView::pageChosen, this, &IndexView::choosePage);
}

void IndexView::buildPages() {
    if (m_local)
        return;
    m_local = new AppLocalView;
    m_store = new AppStoreView;
    m_home = new QStackedWidget;
    m_home->addWidget(m_local);
    m_pages->addWidget(m_home);
    m_pages->addWidget(m_store);
    connect(m_search, &SearchWidget::textChanged, this, &IndexView::onSearchTextChanged);
    connect(m_search, &SearchWidget::leaveForResults, this, &IndexView::focusPage);
    connect(m_local, &AppLocalView::searchObsolete, m_search, &SearchWidget::clear);
    connect(m_local, &AppLocalView::openRequested, this, &IndexView::openRequested);
    connect(m_local, &AppLocalView::addRequested, this, &IndexView::showAddPage);
    connect(m_store, &AppStoreView::categoriesFetched, m_sidebar, &SidebarView::setCategories);
    connect(m_store, &AppStoreView::categoryLeft, m_sidebar, &SidebarView::leaveCategory);
    if (!m_search->text().isEmpty())
        m_local->search(m_search->text());  // typed before the page was built
}

void IndexView::onSearchTextChanged(const QString& text) {
    if (m_pages->currentWidget() == m_store) {
        m_store->onSearchTextChanged(text);
        return;
    }
    if (!text.isEmpty())
        m_home->setCurrentWidget(m_local);
    m_local->search(text);
}

void IndexView::focusPage() {
    if (m_pages->currentWidget() == m_store)
        m_store->focusApps();
    else if (m_home->currentWidget() == m_add)
        m_add->focusTab();
    else
        m_local->focusPrograms();
}

void IndexView::addProgram() {
    if (m_local)
        m_local->onAddAppClicked();
}

bool IndexView::isAdding() const {
    return m_add && m_add->isVisible();
}

void IndexView::add(const QStringList& inputs) {
    if (isAdding())
        m_add->add(inputs);
}

void IndexView::add(const AddRequest& request) {
    if (!m_local)
        return;
    showAddPage();
    m_add->show(request);
}

void IndexView::forgetAdded(const QString& path) {
    if (m_add)
        m_add->forget(path);
}

void IndexView::showAddPage() {
    if (!m_add) {
        m_add = new AddAppsWidget;
        m_home->addWidget(m_add);
        connect(m_add, &AddAppsWidget::left, this, &IndexView::showLibrary);
        connect(m_add, &AddAppsWidget::chosen, this, &IndexView::chosen);
    }
    m_search->clear();
    m_pages->setCurrentIndex(SidebarView::MyApps);
    m_home->setCurrentWidget(m_add);
    m_sidebar->selectMyApps();
    m_add->focusTab();
}

void IndexView::showLibrary() {
    m_home->setCurrentWidget(m_local);
    m_local->focusPrograms();
}

void IndexView::choosePage(SidebarView::Group group, const QModelIndex& row) {
    m_search->clear();
    if (!m_local)
        return;
    m_pages->setCurrentIndex(group);
    m_home->setCurrentWidget(m_local);
    if (group != SidebarView::AllApps)
        return;
    const QVariant category = row.data(SidebarView::CategoryRole);
    if (category.isValid())
        m_store->selectCategory(category.toInt());
}
