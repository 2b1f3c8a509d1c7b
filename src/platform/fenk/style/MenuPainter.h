#pragma once

#include <QSize>

class QPainter;
class QStyleOption;
class QStyleOptionMenuItem;
class QWidget;

/// Menus, menu-like lists of combo boxes, and tool tips.
namespace Fenk::MenuPainter {

void panel(QPainter* painter, const QStyleOption* option, const QWidget* widget);
void item(QPainter* painter, const QStyleOptionMenuItem* option, const QWidget* widget);
QSize itemSize(const QStyleOptionMenuItem* option);
void toolTip(QPainter* painter, const QStyleOption* option, const QWidget* widget);

}  // namespace Fenk::MenuPainter
