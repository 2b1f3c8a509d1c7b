#include "fenk/style/ComboDelegate.h"

#include <QAbstractItemView>
#include <QPainter>

#include "fenk/style/Paint.h"

namespace Fenk {

namespace {

bool isSeparator(const QModelIndex& index) {
    return index.data(Qt::AccessibleDescriptionRole).toString() == QLatin1String("separator");
}

}  // namespace

void ComboDelegate::install(QAbstractItemView* list) {
    if (list->inherits("QComboBoxListView") && list->itemDelegate()->inherits("QComboBoxDelegate"))
        list->setItemDelegate(new ComboDelegate(list));
}

void ComboDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const {
    if (!isSeparator(index)) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    const QRect line(option.rect.left() + Tokens::Space8, option.rect.center().y(),
                     option.rect.width() - 2 * Tokens::Space8, 1);
    painter->fillRect(line, Paint::color(Theme::Border));
}

QSize ComboDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    if (isSeparator(index))
        return {0, Tokens::Space8 + 1};
    return QStyledItemDelegate::sizeHint(option, index);
}

}  // namespace Fenk
