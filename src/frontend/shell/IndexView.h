#pragma once

#include <QWidget>

#include "shell/SidebarView.h"

class AppLocalView;
class QStackedWidget;
class SearchWidget;

/// The contents of the main window: the sidebar and the page that it chooses. The pages are built by
/// buildPages(), after the window is shown.
class IndexView : public QWidget {
    Q_OBJECT
public:
    /// `search` is owned by the title bar.
    explicit IndexView(SearchWidget* search, QWidget* parent = nullptr);

    void buildPages();
    /// Asks for a program file. Does nothing before buildPages().
    void addProgram();
    /// Null before buildPages().
    AppLocalView* localView() const { return m_local; }
    SidebarView* sidebar() const { return m_sidebar; }

Q_SIGNALS:
    /// The user chose a file to run.
    void openRequested(const QString& path);

private:
    void choosePage(SidebarView::Group group);

    SearchWidget* m_search;
    SidebarView* m_sidebar;
    QStackedWidget* m_pages;
    AppLocalView* m_local = nullptr;
};
