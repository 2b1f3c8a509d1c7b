#pragma once

#include "widgets/TickListView.h"

class OfflineComponentsHeaderView;
class OfflineComponentsModel;

/// The table of the dialogs.
class OfflineComponentsListView : public TickListView {
    Q_OBJECT
public:
    explicit OfflineComponentsListView(OfflineComponentsModel* model, QWidget* parent = nullptr);

    OfflineComponentsHeaderView* head() const { return m_head; }

private:
    void onCheckedCountChanged(int count);

    OfflineComponentsHeaderView* m_head;
};
