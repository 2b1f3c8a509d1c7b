#pragma once

class QPainter;
class QStyleOption;
class QStyleOptionComboBox;
class QStyleOptionFrame;
class QStyleOptionSpinBox;
class QWidget;

/// Line edits, text areas, combo boxes and spin boxes: everything that holds a value to change.
namespace Fenk::FieldPainter {

void field(QPainter* painter, const QStyleOption* option, const QWidget* widget);

/// The outline of a scrolling area: a card's border, or a field's where one types.
void areaFrame(QPainter* painter, const QStyleOption* option, const QWidget* widget);

void comboBox(QPainter* painter, const QStyleOptionComboBox* option, const QWidget* widget, qreal hover);
void comboLabel(QPainter* painter, const QStyleOptionComboBox* option, const QWidget* widget);
void spinBox(QPainter* painter, const QStyleOptionSpinBox* option, const QWidget* widget);

}  // namespace Fenk::FieldPainter
