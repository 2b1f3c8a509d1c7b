#include "fenk/style/ItemPainter.h"

#include <QAbstractItemView>
#include <QHeaderView>
#include <QStyle>
#include <QStyleOption>
#include <QTabBar>
#include <QTableView>
#include <QTreeView>

#include "fenk/style/Color.h"
#include "fenk/style/Paint.h"
#include "fenk/style/WidgetLook.h"

namespace Fenk::ItemPainter {

namespace {

using Paint::color;

/// Whether the cell is the first of its row, which has the accent edge.
bool isFirstCell(const QStyleOptionViewItem* option, const QWidget* widget) {
    if (const auto* table = qobject_cast<const QTableView*>(widget))
        return option->index.isValid() && table->horizontalHeader()->visualIndex(option->index.column()) == 0;
    if (qobject_cast<const QTreeView*>(widget))
        return option->rect.left() <= 0;
    return option->viewItemPosition == QStyleOptionViewItem::Beginning ||
           option->viewItemPosition == QStyleOptionViewItem::OnlyOne ||
           option->viewItemPosition == QStyleOptionViewItem::Invalid;
}

QRect sidebarRow(const QRect& row) {
    return row.adjusted(Tokens::Space8, 2, -Tokens::Space8, -2);
}

}  // namespace

void row(QPainter* painter, const QStyleOptionViewItem* option, const QWidget* widget) {
    const bool usable = Paint::enabled(option);
    if (option->backgroundBrush.style() != Qt::NoBrush)
        painter->fillRect(option->rect, option->backgroundBrush);
    else if (option->features & QStyleOptionViewItem::Alternate)
        painter->fillRect(option->rect, option->palette.brush(QPalette::AlternateBase));
    if (!usable)
        return;
    const bool chosen = option->state & QStyle::State_Selected;
    if (!chosen && !Paint::hovered(option))
        return;
    const QColor soft = color(Theme::AccentSoft);
    if (widget && widget->inherits("QComboBoxListView")) {
        if (chosen)
            Paint::box(painter, option->rect, Tokens::RadiusControl, soft);
        return;
    }
    if (hasSidebarLook(widget)) {
        const QRect inner = sidebarRow(option->rect);
        // Trees also draw the area before a row, which may be empty.
        if (inner.isValid())
            Paint::box(painter, inner, Tokens::RadiusWindow, chosen ? soft : withAlpha(soft, 0.6));
        return;
    }
    // Opaque, since trees draw the background of a row and then of its cells.
    painter->fillRect(option->rect, chosen ? soft : mix(option->palette.color(QPalette::Base), soft, 0.6));
    if (!chosen || !isFirstCell(option, widget))
        return;
    const QRect edge =
        QStyle::visualRect(option->direction, option->rect,
                           QRect(option->rect.left(), option->rect.top() + Tokens::Space4,
                                 Tokens::SelectionEdge, option->rect.height() - 2 * Tokens::Space4));
    Paint::box(painter, edge, Tokens::SelectionEdge / 2.0, color(Theme::Accent));
}

void sidebarRing(QPainter* painter, const QStyleOptionViewItem* option) {
    if (Paint::keyboardFocus(option))
        Paint::ring(painter, sidebarRow(option->rect), Tokens::RadiusWindow);
}

void branch(QPainter* painter, const QStyleOption* option) {
    if (!(option->state & QStyle::State_Children))
        return;
    const bool open = option->state & QStyle::State_Open;
    const Qt::ArrowType closed = option->direction == Qt::LeftToRight ? Qt::RightArrow : Qt::LeftArrow;
    Paint::chevron(painter, option->rect, open ? Qt::DownArrow : closed, color(Theme::Secondary));
}

void headSection(QPainter* painter, const QStyleOptionHeader* option) {
    painter->fillRect(option->rect, color(Theme::Surface));
    const QRect line = option->orientation == Qt::Horizontal
                           ? QRect(option->rect.left(), option->rect.bottom(), option->rect.width(), 1)
                           : QRect(option->rect.right(), option->rect.top(), 1, option->rect.height());
    painter->fillRect(line, color(Theme::Border));
}

void headLabel(QPainter* painter, const QStyleOptionHeader* option) {
    const Paint::Scope scope(painter);
    painter->setPen(color(Paint::enabled(option) ? Theme::Secondary : Theme::Disabled));
    const QRect all = option->rect;
    QRect room = all.adjusted(Tokens::Space12, 0, -Tokens::Space12, 0);
    if (option->sortIndicator != QStyleOptionHeader::None) {
        const QRect arrow(room.right() - Tokens::Space16 + 1, all.top(), Tokens::Space16, all.height());
        Paint::chevron(painter, QStyle::visualRect(option->direction, all, arrow),
                       option->sortIndicator == QStyleOptionHeader::SortUp ? Qt::UpArrow : Qt::DownArrow,
                       color(Theme::Secondary));
        room.setRight(arrow.left() - Tokens::Space4);
        room = QStyle::visualRect(option->direction, all, room);
    }
    painter->drawText(room, int(option->textAlignment | Qt::AlignVCenter),
                      option->fontMetrics.elidedText(option->text, Qt::ElideRight, room.width()));
}

void tab(QPainter* painter, const QStyleOptionTab* option, const QWidget*) {
    const bool chosen = option->state & QStyle::State_Selected;
    const QRect inner =
        option->rect.adjusted(Tokens::Space4, Tokens::Space4, -Tokens::Space4, -Tokens::Space4);
    if (!chosen && Paint::hovered(option))
        Paint::box(painter, inner, Tokens::RadiusControl, color(Theme::AccentSoft));
    if (Paint::keyboardFocus(option) && chosen)
        Paint::ring(painter, inner, Tokens::RadiusControl);
    if (!chosen)
        return;
    const QRect r = option->rect;
    QRectF edge;
    switch (option->shape) {
        case QTabBar::RoundedWest:
        case QTabBar::TriangularWest:
            edge = QRectF(r.right() - 1, r.top() + Tokens::Space8, 2, r.height() - 2 * Tokens::Space8);
            break;
        case QTabBar::RoundedEast:
        case QTabBar::TriangularEast:
            edge = QRectF(r.left(), r.top() + Tokens::Space8, 2, r.height() - 2 * Tokens::Space8);
            break;
        case QTabBar::RoundedSouth:
        case QTabBar::TriangularSouth:
            edge = QRectF(r.left() + Tokens::Space12, r.top(), r.width() - 2 * Tokens::Space12, 2);
            break;
        default:
            edge = QRectF(r.left() + Tokens::Space12, r.bottom() - 1, r.width() - 2 * Tokens::Space12, 2);
    }
    Paint::box(painter, edge, 1, color(Paint::enabled(option) ? Theme::Accent : Theme::Disabled));
}

void tabLabel(QPainter* painter, const QStyleOptionTab* option, const QRect& room) {
    const Paint::Scope scope(painter);
    const bool chosen = option->state & QStyle::State_Selected;
    painter->setPen(color(!Paint::enabled(option) ? Theme::Disabled : chosen ? Theme::Accent : Theme::Text));
    QRect text = room;
    if (!option->icon.isNull()) {
        const int words = option->fontMetrics.horizontalAdvance(option->text);
        const int used = option->iconSize.width() + Tokens::Space8 + words;
        const QRect icon(QPoint(room.left() + qMax(0, (room.width() - used) / 2),
                                room.center().y() - option->iconSize.height() / 2 + 1),
                         option->iconSize);
        option->icon.paint(painter, icon);
        text.setLeft(icon.right() + Tokens::Space8);
        painter->drawText(text, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextShowMnemonic, option->text);
        return;
    }
    painter->drawText(text, Qt::AlignCenter | Qt::TextShowMnemonic, option->text);
}

}  // namespace Fenk::ItemPainter
