#pragma once

#include <QStackedWidget>
#include <QTimer>

#include "store/records/VeskClientCategoryInfo.h"

class AppStoreCatelogWidget;
class AppStoreSearchWidget;

/// The store's page of the main window: the catalogue, and what a search finds. Asks the store for nothing
/// before it is shown for the first time. Owns both pages.
class AppStoreView : public QStackedWidget {
    Q_OBJECT
public:
    explicit AppStoreView(QWidget* parent = nullptr);

    AppStoreCatelogWidget* catelogWidget() const { return m_catelog; }
    AppStoreSearchWidget* searchWidget() const { return m_search; }
    /// Take over the widget; the one before is deleted.
    void setCatelogWidget(AppStoreCatelogWidget* catelog);
    void setSearchWidget(AppStoreSearchWidget* search);
    /// Shows the catalogue, and the category if there is one of that id.
    void selectCategory(int id);
    void focusApps();

Q_SIGNALS:
    void categoriesFetched(const QList<OpenAPI::VeskClientCategoryInfo>& categories);
    /// The catalogue shows every category again.
    void categoryLeft();

public Q_SLOTS:
    void onSearchTextChanged(const QString& searchText);
    void onSearchLimitTimeout();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void replace(QWidget* before, QWidget* now, int place);

    AppStoreCatelogWidget* m_catelog = nullptr;
    AppStoreSearchWidget* m_search = nullptr;
    QTimer m_searchLimit;  ///< until the user has stopped typing
    QString m_searchText;
    bool m_wasShown = false;
};
