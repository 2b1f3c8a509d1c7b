#include "shell/configuration/offline/OfflineComponentsItemDelegate.h"

#include <QPainter>

#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "shell/configuration/offline/OfflineComponentsModel.h"

using namespace Fenk;

namespace {

Theme::Role colorOf(const QModelIndex& index) {
    switch (index.data(OfflineComponentsModel::StatusKindRole).toInt()) {
        case OfflineComponentState::Done:
            return Theme::Success;
        case OfflineComponentState::Failed:
            return Theme::Danger;
        default:
            return Theme::Secondary;
    }
}

void paintCheckBox(QPainter* painter, QStyleOptionViewItem cell, const QModelIndex& index) {
    const QRect row = cell.rect;
    const QRect place(row.left() + Tokens::Space12, row.top() + (row.height() - Tokens::CheckSize) / 2,
                      Tokens::CheckSize, Tokens::CheckSize);
    cell.rect = QStyle::visualRect(cell.direction, row, place);
    cell.state &= ~(QStyle::State_HasFocus | QStyle::State_On | QStyle::State_Off);
    cell.state |= cell.checkState == Qt::Checked ? QStyle::State_On : QStyle::State_Off;
    cell.state.setFlag(QStyle::State_Enabled, index.flags() & Qt::ItemIsUserCheckable);
    cell.widget->style()->drawPrimitive(QStyle::PE_IndicatorItemViewItemCheck, &cell, painter, cell.widget);
}

}  // namespace

void OfflineComponentsItemDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                          const QModelIndex& index) const {
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    cell.features &= ~QStyleOptionViewItem::HasCheckIndicator;
    const QString name = cell.text;
    cell.text.clear();
    cell.widget->style()->drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);
    if (index.column() == OfflineComponentsModel::Select) {
        paintCheckBox(painter, cell, index);
        return;
    }
    // The name has room for at least half of the row, whatever the status says.
    const QRect room = cell.rect.adjusted(Tokens::Space12, 0, -Tokens::Space12, 0);
    const QString status = index.data(OfflineComponentsModel::StatusRole).toString();
    const QFontMetrics small(Theme::instance()->font(Theme::Small));
    const int needed = qMin(cell.fontMetrics.horizontalAdvance(name), room.width() / 2);
    const int width =
        qMin(small.horizontalAdvance(status) + Tokens::Space4, room.width() - needed - Tokens::Space12);
    QRect left = room, right = room;
    left.setWidth(room.width() - (status.isEmpty() ? 0 : width + Tokens::Space12));
    right.setLeft(room.right() + 1 - width);

    painter->save();
    painter->setPen(Theme::instance()->color(Theme::Text));
    painter->setFont(cell.font);
    painter->drawText(QStyle::visualRect(cell.direction, room, left), Qt::AlignLeading | Qt::AlignVCenter,
                      cell.fontMetrics.elidedText(name, Qt::ElideRight, left.width()));
    painter->setPen(Theme::instance()->color(colorOf(index)));
    painter->setFont(Theme::instance()->font(Theme::Small));
    painter->drawText(QStyle::visualRect(cell.direction, room, right), Qt::AlignTrailing | Qt::AlignVCenter,
                      small.elidedText(status, Qt::ElideRight, right.width()));
    painter->restore();
}

QSize OfflineComponentsItemDelegate::sizeHint(const QStyleOptionViewItem& option,
                                              const QModelIndex& index) const {
    return {QStyledItemDelegate::sizeHint(option, index).width(), Tokens::RowHeight};
}
