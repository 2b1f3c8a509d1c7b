#pragma once

#include <QStyledItemDelegate>

class QAbstractItemView;

namespace Fenk {

/// Draws the rows of a combo box's list with the style, like rows of other lists; Qt's own delegate for them
/// does not use the style. Supports the separators of QComboBox.
class ComboDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// Replaces Qt's delegate of a combo box's list; keeps any other delegate.
    static void install(QAbstractItemView* list);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

}  // namespace Fenk
