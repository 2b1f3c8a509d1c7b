#pragma once

#include <QTreeView>

/// The associations in rows; a click anywhere in a row, or the space key, turns its check box over.
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
