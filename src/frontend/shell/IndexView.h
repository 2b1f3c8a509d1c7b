#pragma once

#include <QWidget>

#include "shell/SidebarView.h"

class AddAppsWidget;
class AppLocalView;
class AppStoreView;
class QStackedWidget;
class SearchWidget;
struct AddRequest;

/// The contents of the main window: the sidebar and the page that it chooses. The pages are built by
/// buildPages(), after the window is shown. The page that adds programs lies over the library and is built
/// when it is wanted. The search field searches the page that is shown; another page clears it.
class IndexView : public QWidget {
    Q_OBJECT
public:
    /// `search` is owned by the title bar.
    explicit IndexView(SearchWidget* search, QWidget* parent = nullptr);

    void buildPages();
    /// Asks for a program file. Does nothing before buildPages().
    void addProgram();
    /// Whether the page that adds programs is shown.
    bool isAdding() const;
    /// Checks inputs of AddInputs on that page, which is shown.
    void add(const QStringList& inputs);
    /// Shows that page, with what has been checked. Does nothing before buildPages().
    void add(const AddRequest& request);
    /// It is in the library: that page need not show it any more.
    void forgetAdded(const QString& path);
    /// Null before buildPages().
    AppLocalView* localView() const { return m_local; }
    /// Null before buildPages().
    AppStoreView* storeView() const { return m_store; }
    SidebarView* sidebar() const { return m_sidebar; }

Q_SIGNALS:
    /// The user chose a file to run.
    void openRequested(const QString& path);
    /// The user wants this from the page that adds programs.
    void chosen(const AddRequest& request);

private:
    void showAddPage();
    void showLibrary();
    void choosePage(SidebarView::Group group, const QModelIndex& row);
    void onSearchTextChanged(const QString& text);
    void focusPage();

    SearchWidget* m_search;
    SidebarView* m_sidebar;
    QStackedWidget* m_pages;
    QStackedWidget* m_home = nullptr;  ///< the library, and what adds to it
    AppLocalView* m_local = nullptr;
    AddAppsWidget* m_add = nullptr;
    AppStoreView* m_store = nullptr;
};
