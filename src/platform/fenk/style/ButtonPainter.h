#pragma once

#include <QPalette>

#include "fenk/style/WidgetLook.h"

class QPainter;
class QStyleOption;
class QStyleOptionButton;
class QWidget;

/// Push buttons, tool buttons, check boxes and radio buttons. `hover` is the progress of the hover
/// transition, 0 to 1.
namespace Fenk::ButtonPainter {

void panel(QPainter* painter, const QStyleOption* option, const QWidget* widget, qreal hover);
void toolPanel(QPainter* painter, const QStyleOption* option, const QWidget* widget, qreal hover);

/// Colour of a button's text and icon.
QColor ink(const QStyleOption* option, ButtonKind kind);

/// Icon and text in the middle, with a gap from Tokens.h, and a chevron on the right if there is a menu.
void label(QPainter* painter, const QStyleOptionButton* option, const QWidget* widget);

void checkBox(QPainter* painter, const QStyleOption* option, qreal hover);
void radioButton(QPainter* painter, const QStyleOption* option, qreal hover);

}  // namespace Fenk::ButtonPainter
