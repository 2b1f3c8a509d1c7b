#include "fenk/style/MenuPainter.h"

#include <QAction>
#include <QMenu>
#include <QStyle>
#include <QStyleOption>
#include <QWidget>

#include "fenk/style/Paint.h"
#include "fenk/style/SymbolicIconEngine.h"
#include "fenk/style/WidgetLook.h"

namespace Fenk::MenuPainter {

namespace {

using Paint::color;

constexpr int Side = Tokens::Space12;
constexpr int SeparatorHeight = Tokens::Space8 + 1;

/// The start of the text: after the column of icons or ticks if any item of the menu has one.
int textStart(const QStyleOptionMenuItem* option) {
    if (option->maxIconWidth > 0 || option->menuHasCheckableItems)
        return Side + Tokens::IconSmall + Tokens::Space8;
    return Side;
}

bool rounded(const QWidget* widget) {
    return widget && widget->testAttribute(Qt::WA_TranslucentBackground);
}

/// Whether the entry is destructive, which is a property of its action.
bool isDestructiveEntry(const QStyleOptionMenuItem* option, const QWidget* widget) {
    const auto* menu = qobject_cast<const QMenu*>(widget);
    return menu && isDestructive(menu->actionAt(option->rect.center()));
}

}  // namespace

void panel(QPainter* painter, const QStyleOption* option, const QWidget* widget) {
    Paint::box(painter, option->rect, rounded(widget) ? Tokens::RadiusCard : 0, color(Theme::Surface),
               color(Theme::Border));
}

QSize itemSize(const QStyleOptionMenuItem* option) {
    if (option->menuItemType == QStyleOptionMenuItem::Separator)
        return {Tokens::MenuMinWidth, SeparatorHeight};
    const QString text = option->text.section('\t', 0, 0);
    int width = textStart(option) + option->fontMetrics.size(Qt::TextShowMnemonic, text).width() + Side;
    if (option->text.contains('\t'))
        width += Tokens::Space24 + option->tabWidth;
    if (option->menuItemType == QStyleOptionMenuItem::SubMenu)
        width += Tokens::Space24;
    return {qMax(width + 2 * Tokens::Space4, Tokens::MenuMinWidth), Tokens::MenuRowHeight};
}

void item(QPainter* painter, const QStyleOptionMenuItem* option, const QWidget* widget) {
    const Paint::Scope scope(painter);
    const auto visual = [option](const QRect& r) {
        return QStyle::visualRect(option->direction, option->rect, r);
    };
    if (option->menuItemType == QStyleOptionMenuItem::Separator) {
        painter->fillRect(
            QRect(option->rect.left() + Side, option->rect.center().y(), option->rect.width() - 2 * Side, 1),
            color(Theme::Border));
        return;
    }
    const QRect row = option->rect.adjusted(Tokens::Space4, 0, -Tokens::Space4, 0);
    const bool usable = Paint::enabled(option);
    if (usable && (option->state & QStyle::State_Selected))
        Paint::box(painter, row, Tokens::RadiusControl, color(Theme::AccentSoft));
    const bool danger = usable && isDestructiveEntry(option, widget);
    const QColor ink = color(!usable ? Theme::Disabled : danger ? Theme::Danger : Theme::Text);

    const QRect mark =
        visual(QRect(row.left() + Side - Tokens::Space4, row.center().y() - Tokens::IconSmall / 2 + 1,
                     Tokens::IconSmall, Tokens::IconSmall));
    if (option->checked && option->checkType == QStyleOptionMenuItem::Exclusive)
        Paint::box(painter, Paint::centred(mark, Tokens::Space8, Tokens::Space8), Tokens::Space4,
                   color(Theme::Accent));
    else if (option->checked)
        Paint::tick(painter, mark, color(Theme::Accent));
    else if (!option->icon.isNull() && danger)
        painter->drawPixmap(
            mark, tintedPixmap(option->icon, mark.size(), painter->device()->devicePixelRatioF(), ink));
    else if (!option->icon.isNull())
        option->icon.paint(painter, mark, Qt::AlignCenter, usable ? QIcon::Normal : QIcon::Disabled);

    painter->setPen(ink);
    painter->setFont(option->font);
    QRect text = row;
    text.setLeft(option->rect.left() + textStart(option));
    text.setRight(row.right() - Side + Tokens::Space4);
    const bool keys = widget && widget->style()->styleHint(QStyle::SH_UnderlineShortcut, option, widget);
    const int flags =
        Qt::AlignVCenter | Qt::TextSingleLine | (keys ? Qt::TextShowMnemonic : Qt::TextHideMnemonic);
    painter->drawText(visual(text), flags | QStyle::visualAlignment(option->direction, Qt::AlignLeft),
                      option->text.section('\t', 0, 0));
    if (option->text.contains('\t')) {
        painter->setPen(color(usable ? Theme::Secondary : Theme::Disabled));
        painter->drawText(visual(text), flags | QStyle::visualAlignment(option->direction, Qt::AlignRight),
                          option->text.section('\t', 1));
    }
    if (option->menuItemType == QStyleOptionMenuItem::SubMenu) {
        const QRect arrow(row.right() - Tokens::Space24, row.top(), Tokens::Space24, row.height());
        Paint::chevron(painter, visual(arrow),
                       option->direction == Qt::LeftToRight ? Qt::RightArrow : Qt::LeftArrow,
                       color(usable ? Theme::Secondary : Theme::Disabled));
    }
}

void toolTip(QPainter* painter, const QStyleOption* option, const QWidget* widget) {
    Paint::box(painter, option->rect, rounded(widget) ? Tokens::RadiusControl : 0, color(Theme::Surface),
               color(Theme::Border));
}

}  // namespace Fenk::MenuPainter
