#pragma once

#include <QStyledItemDelegate>

class QAbstractItemView;

namespace Fenk {

/// Rows of a combo box's list, drawn by the style like any other row; Qt's own delegate for them asks no
/// style. Knows the separators that QComboBox inserts.
class ComboDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// Puts one into a combo box's list that still has Qt's; lists with a delegate of the program's own keep
    /// it.
    static void install(QAbstractItemView* list);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

}  // namespace Fenk
