#pragma once

#include <QTableView>

class QMenu;
class QStandardItemModel;

/// A table of two columns whose rows the user adds, edits in place and deletes: double click or F2 edits a
/// cell, Delete deletes the selected rows, Insert adds one, the menu key opens the context menu. Without a
/// frame of its own, for a card.
class EditableTable : public QTableView {
    Q_OBJECT
public:
    EditableTable(const QString& firstTitle, const QString& secondTitle, QWidget* parent = nullptr);

    QStandardItemModel* rows() const { return m_rows; }
    /// In rising order.
    QList<int> selectedRows() const;
    /// The row below the mouse, -1 when there is none.
    int hoveredRow() const { return m_hoveredRow; }
    /// Shows the row, selects it and edits its first cell.
    void editRow(int row);
    /// `byKey` selects the first entry. There is no menu when it would be empty.
    void openMenu(const QPoint& globalPos, bool byKey);

Q_SIGNALS:
    /// The number of rows has changed, perhaps.
    void countChanged();

protected:
    /// What can't be done now is left out.
    virtual void addMenuEntries(QMenu* menu) = 0;
    virtual void deleteSelected() = 0;
    virtual void addRow() = 0;

    /// While it is true, rows are no edits, and countChanged() waits.
    void setFilling(bool filling);
    bool isFilling() const { return m_isFilling; }

    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool viewportEvent(QEvent* event) override;

private:
    QStandardItemModel* m_rows;
    int m_hoveredRow = -1;
    bool m_isFilling = false;
};
