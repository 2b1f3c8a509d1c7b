#pragma once

#include <QTreeView>

/// The list of associations. A click anywhere in a row, or the space key, toggles its check box.
class FileAssosiationsListView : public QTreeView {
    Q_OBJECT
public:
    explicit FileAssosiationsListView(QWidget* parent = nullptr);

    void setModel(QAbstractItemModel* model) override;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void toggle(const QModelIndex& index);
};
