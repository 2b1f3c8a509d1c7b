#pragma once

class QPainter;
class QStyleOption;
class QStyleOptionComboBox;
class QStyleOptionFrame;
class QStyleOptionSpinBox;
class QWidget;

/// Line edits, text areas, combo boxes and spin boxes.
namespace Fenk::FieldPainter {

void field(QPainter* painter, const QStyleOption* option, const QWidget* widget);

/// The outline of a scroll area: the border of a card, or of a field if its text is editable.
void areaFrame(QPainter* painter, const QStyleOption* option, const QWidget* widget);

void comboBox(QPainter* painter, const QStyleOptionComboBox* option, const QWidget* widget, qreal hover);
void comboLabel(QPainter* painter, const QStyleOptionComboBox* option, const QWidget* widget);
void spinBox(QPainter* painter, const QStyleOptionSpinBox* option, const QWidget* widget);

}  // namespace Fenk::FieldPainter
