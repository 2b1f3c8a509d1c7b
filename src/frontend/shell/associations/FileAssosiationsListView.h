#pragma once

#include "widgets/TickListView.h"

/// The list of associations.
class FileAssosiationsListView : public TickListView {
    Q_OBJECT
public:
    explicit FileAssosiationsListView(QWidget* parent = nullptr);

    void setModel(QAbstractItemModel* model) override;
};
