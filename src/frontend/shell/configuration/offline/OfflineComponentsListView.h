#pragma once

#include <QTreeView>

class OfflineComponentsHeaderView;
class OfflineComponentsModel;

/// The table of the dialogs. A click anywhere in a row, or the space key, toggles its check box.
class OfflineComponentsListView : public QTreeView {
    Q_OBJECT
public:
    explicit OfflineComponentsListView(OfflineComponentsModel* model, QWidget* parent = nullptr);

    OfflineComponentsHeaderView* head() const { return m_head; }

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void toggle(const QModelIndex& index);
    void onCheckedCountChanged(int count);

    OfflineComponentsHeaderView* m_head;
};
