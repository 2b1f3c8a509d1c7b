#pragma once

#include <QPalette>

#include "fenk/style/WidgetLook.h"

class QPainter;
class QStyleOption;
class QStyleOptionButton;
class QWidget;

/// Push buttons, tool buttons, check boxes and radio buttons. `hover` is how far the hover look has come, 0
/// to 1.
namespace Fenk::ButtonPainter {

void panel(QPainter* painter, const QStyleOption* option, const QWidget* widget, qreal hover);
void toolPanel(QPainter* painter, const QStyleOption* option, const QWidget* widget, qreal hover);

/// Colour of a button's word and icon.
QColor ink(const QStyleOption* option, ButtonKind kind);

/// Icon and word in the middle, the gap between them from the tokens, a chevron on the right if there is a
/// menu.
void label(QPainter* painter, const QStyleOptionButton* option, const QWidget* widget);

void checkBox(QPainter* painter, const QStyleOption* option, qreal hover);
void radioButton(QPainter* painter, const QStyleOption* option, qreal hover);

}  // namespace Fenk::ButtonPainter
