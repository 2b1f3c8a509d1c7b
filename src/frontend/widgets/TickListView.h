#pragma once

#include <QTreeView>

/// A table whose rows have a check box: a click anywhere in a row, or the space key, toggles it. The columns
/// are fixed, and the rows have one height.
class TickListView : public QTreeView {
    Q_OBJECT
public:
    /// `column` has the check boxes.
    explicit TickListView(int column, QWidget* parent = nullptr);

    void setModel(QAbstractItemModel* model) override;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void toggle(const QModelIndex& index);

    int m_column;
};
