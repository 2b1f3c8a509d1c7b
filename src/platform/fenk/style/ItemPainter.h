#pragma once

#include <QRect>

class QPainter;
class QStyleOption;
class QStyleOptionFrame;
class QStyleOptionHeader;
class QStyleOptionTab;
class QStyleOptionViewItem;
class QWidget;

/// Rows of lists, tables and trees with their heads, and tabs: everything of which one out of many is the
/// current one.
namespace Fenk::ItemPainter {

/// Ground of a row: hover and selection, the accent edge at its start.
void row(QPainter* painter, const QStyleOptionViewItem* option, const QWidget* widget);
/// Around a row of a sidebar that has the keyboard's focus; nothing for another.
void sidebarRing(QPainter* painter, const QStyleOptionViewItem* option);
void branch(QPainter* painter, const QStyleOption* option);

void headSection(QPainter* painter, const QStyleOptionHeader* option);
void headLabel(QPainter* painter, const QStyleOptionHeader* option);

void tab(QPainter* painter, const QStyleOptionTab* option, const QWidget* widget);
void tabLabel(QPainter* painter, const QStyleOptionTab* option, const QRect& room);

}  // namespace Fenk::ItemPainter
