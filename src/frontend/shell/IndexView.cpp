#include "shell/IndexView.h"

#include <QHBoxLayout>
#include <QStackedWidget>

#include "launch/LaunchWindows.h"
#include "shell/SearchWidget.h"
#include "shell/library/AppLocalView.h"

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
    m_pages->addWidget(m_local);
    if (const auto& makeStore = LaunchWindows::instance().storePage)
        m_pages->addWidget(makeStore());
    connect(m_search, &SearchWidget::textChanged, m_local, &AppLocalView::search);
    connect(m_search, &SearchWidget::leaveForResults, m_local, &AppLocalView::focusPrograms);
    connect(m_local, &AppLocalView::searchObsolete, m_search, &SearchWidget::clear);
    connect(m_local, &AppLocalView::openRequested, this, &IndexView::openRequested);
    if (!m_search->text().isEmpty())
        m_local->search(m_search->text());  // typed before the page was built
}

void IndexView::addProgram() {
    if (m_local)
        m_local->slotAddApp();
}

void IndexView::choosePage(SidebarView::Group group) {
    m_search->clear();
    if (group < m_pages->count())
        m_pages->setCurrentIndex(group);
}
