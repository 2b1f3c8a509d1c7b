#pragma once

#include <QWidget>

#include "shell/SidebarView.h"

class AppLocalView;
class QStackedWidget;
class SearchWidget;

/// What fills the window: the sidebar and the page that it chooses. The pages are built when the window
/// already stands.
class IndexView : public QWidget {
    Q_OBJECT
public:
    /// The field belongs to the title bar.
    explicit IndexView(SearchWidget* search, QWidget* parent = nullptr);

    void buildPages();
    /// Asks for a program file, as soon as there are pages.
    void addProgram();
    AppLocalView* localView() const { return m_local; }
    SidebarView* sidebar() const { return m_sidebar; }

Q_SIGNALS:
    void openRequested(const QString& path);

private:
    void choosePage(SidebarView::Group group);

    SearchWidget* m_search;
    SidebarView* m_sidebar;
    QStackedWidget* m_pages;
    AppLocalView* m_local = nullptr;
};
