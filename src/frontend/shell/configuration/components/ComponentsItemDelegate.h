#pragma once

#include <QPersistentModelIndex>
#include <QStyledItemDelegate>

/// Draws a component's row: name and description on the left, its size and status on the right. The row under
/// the pointer, or with the focus, has a button in the place of the status, which a click presses.
class ComponentsItemDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;

    /// What the button of a row says.
    static QString actionText(int action);

Q_SIGNALS:
    void pressed(const QModelIndex& index);

private:
    QRect buttonRect(const QStyleOptionViewItem& option, const QModelIndex& index) const;
    void drawButton(QPainter* painter, const QStyleOptionViewItem& row, const QModelIndex& index) const;

    QPersistentModelIndex m_down;  ///< where the mouse button went down
};
