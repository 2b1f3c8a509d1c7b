#pragma once

#include <QStackedWidget>

#include "store/view/AppStoreViewUtils.h"

class AppStoreItemListView;
class ListPlaceholder;

/// A list of applications with the states that stand for it. Owns the list, its model and the placeholders.
class StoreAppGridScrollView : public QStackedWidget {
    Q_OBJECT
public:
    enum Page { Grid, Loading, Failed, Empty };

    explicit StoreAppGridScrollView(QWidget* parent = nullptr);

    void setPage(int index);
    void setBottomLoading(bool loading);
    bool isBottomLoading() const;
    void scrollToTop();
    void appendApps(const QList<AppStoreViewUtils::StoreAppModelData>& apps);
    void clearApps();
    int appCount() const;
    /// A message that disappears after 1.5 s.
    void showFloating(const QString& text);
    void setEmptyText(const QString& text);
    /// Moves the focus to the current card, or to the placeholder's button.
    void focusApps();

    AppStoreItemListView* list() const { return m_list; }

Q_SIGNALS:
    void reachedBottom();
    void retry();

private:
    void showEmptyIcon();

    AppStoreItemListView* m_list;
    ListPlaceholder* m_empty;
};
