#pragma once

#include <QRect>

class QPainter;
class QStyleOption;
class QStyleOptionFrame;
class QStyleOptionHeader;
class QStyleOptionTab;
class QStyleOptionViewItem;
class QWidget;

/// Rows and headers of lists, tables and trees, and tabs.
namespace Fenk::ItemPainter {

/// Background of a row: hover, selection, and the accent edge at its start.
void row(QPainter* painter, const QStyleOptionViewItem* option, const QWidget* widget);
/// The focus ring of a sidebar row; draws nothing for other rows.
void sidebarRing(QPainter* painter, const QStyleOptionViewItem* option);
void branch(QPainter* painter, const QStyleOption* option);

void headSection(QPainter* painter, const QStyleOptionHeader* option);
void headLabel(QPainter* painter, const QStyleOptionHeader* option);

void tab(QPainter* painter, const QStyleOptionTab* option, const QWidget* widget);
void tabLabel(QPainter* painter, const QStyleOptionTab* option, const QRect& room);

}  // namespace Fenk::ItemPainter
