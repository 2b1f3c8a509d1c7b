#pragma once

#include <QStyledItemDelegate>

class QComboBox;

/// Edits cells of an EditableTable with combo boxes. A chosen entry, Return and the loss of the focus write
/// the text to the cell; Escape leaves the cell as it was. The wheel does nothing to the entry, and keys that
/// would step through the entries open the list. Marks the current cell for keys.
class ComboCellDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

protected:
    bool eventFilter(QObject* editor, QEvent* event) override;
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

    /// Gives the combo box of a column its accessible name and entries.
    virtual void prepare(QComboBox* combo, int column) const = 0;
};
