#pragma once

#include <QTimer>

#include "store/view/LoadingListView.h"

class AppStoreItemModel;
class StoreAppItemUI;

/// The cards of the store, in as many columns as fit. Only the cards in sight, and the one that has the
/// focus, exist as widgets. Tab reaches the current card; the arrow keys, Page Up and Down, Home and End move
/// to the others. A card's button installs the application, or starts or ends its program.
class AppStoreItemListView : public LoadingListView {
    Q_OBJECT
public:
    explicit AppStoreItemListView(QWidget* parent = nullptr);

    AppStoreItemModel* appModel() const { return m_model; }
    /// Moves the focus to the current card.
    void focusCurrent();
    /// Null for a row out of sight.
    StoreAppItemUI* card(const QModelIndex& index) const;

Q_SIGNALS:
    void appStarted(const QModelIndex& index);
    void appStoped(const QModelIndex& index);
    void appSetup(const QModelIndex& index);

public Q_SLOTS:
    void onAppStarted(const QModelIndex& index);
    void onAppStoped(const QModelIndex& index);
    void onAppSetup(const QModelIndex& index);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void showEvent(QShowEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    using LoadingListView::edit;
    bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void onPressed(StoreAppItemUI* card);
    int columns() const;
    void updateCards();
    void moveTo(int row);
    void showSetupError(const QString& title, const QString& errorText);

    AppStoreItemModel* m_model;
    QTimer m_visibility;
    QList<QPersistentModelIndex> m_open;  ///< rows with a card
};
