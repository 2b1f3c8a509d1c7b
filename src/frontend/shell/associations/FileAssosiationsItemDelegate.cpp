#include "shell/associations/FileAssosiationsItemDelegate.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include "fenk/controls/Label.h"
#include "fenk/style/Tokens.h"
#include "programs/ProgramIcons.h"
#include "shell/associations/AssociationModel.h"

using namespace Fenk;

namespace {

QRect centred(const QRect& cell, int edge) {
    QRect place(0, 0, edge, edge);
    place.moveCenter(cell.center());
    return place;
}

}  // namespace

void FileAssosiationsItemDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                         const QModelIndex& index) const {
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    cell.features &= ~QStyleOptionViewItem::HasCheckIndicator;
    cell.widget->style()->drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);
    if (index.column() == AssociationModel::Select) {
        cell.rect = centred(option.rect, Tokens::CheckSize);
        cell.state &= ~(QStyle::State_HasFocus | QStyle::State_On | QStyle::State_Off);
        cell.state |= cell.checkState == Qt::Checked ? QStyle::State_On : QStyle::State_Off;
        cell.widget->style()->drawPrimitive(QStyle::PE_IndicatorItemViewItemCheck, &cell, painter,
                                            cell.widget);
    } else if (index.column() == AssociationModel::Icon) {
        const QRect place = centred(option.rect, Tokens::IconLarge);
        const qreal ratio = cell.widget->devicePixelRatioF();
        const QPixmap picture = ProgramIcons::instance()->picture(
            index.data(AssociationModel::IconFileRole).toString(), qRound(Tokens::IconLarge * ratio));
        if (!picture.isNull()) {
            QRectF shown(QPointF(), QSizeF(picture.size()) / ratio);
            shown.moveCenter(QRectF(place).center());
            painter->drawPixmap(shown, picture, picture.rect());
        }
    }
}

QSize FileAssosiationsItemDelegate::sizeHint(const QStyleOptionViewItem& option,
                                             const QModelIndex& index) const {
    return {QStyledItemDelegate::sizeHint(option, index).width(), Tokens::RowHeight};
}

bool FileAssosiationsItemDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                                             const QStyleOptionViewItem& option, const QModelIndex& index) {
    const bool isCut = event->type() == QEvent::ToolTip &&
                       QStyledItemDelegate::sizeHint(option, index).width() > option.rect.width();
    if (isCut)
        QToolTip::showText(event->globalPos(), plainToolTip(index.data().toString()), view);
    else
        QToolTip::hideText();
    return isCut;
}
