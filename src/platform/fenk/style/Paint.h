#pragma once

#include <QColor>
#include <QPainter>
#include <QStyleOption>

#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"

/// Shapes that all painters use. They restore the state of the QPainter.
namespace Fenk::Paint {

/// Saves the QPainter, enables antialiasing, and restores it.
class Scope {
public:
    explicit Scope(QPainter* painter) : m_painter(painter) {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
    }
    ~Scope() { m_painter->restore(); }
    Q_DISABLE_COPY(Scope)

private:
    QPainter* m_painter;
};

QColor color(Theme::Role role);
bool enabled(const QStyleOption* option);
bool hovered(const QStyleOption* option);
bool pressed(const QStyleOption* option);
bool keyboardFocus(const QStyleOption* option);

/// One step towards the text colour: the background of a pressed control.
QColor step(const QColor& ground);

/// A box with the border inside `rect`; an invalid stroke means no border.
void box(QPainter* painter, const QRectF& rect, qreal radius, const QColor& fill,
         const QColor& stroke = QColor());

/// A focus ring inside `rect`, for items without room outside.
void ring(QPainter* painter, const QRectF& rect, qreal radius);

/// The shadow of a floating widget; only the part outside `rect` is meant to be visible.
void shadow(QPainter* painter, const QRect& rect, qreal radius);

void tick(QPainter* painter, const QRectF& rect, const QColor& color);
void chevron(QPainter* painter, const QRectF& rect, Qt::ArrowType direction, const QColor& color);

/// A rectangle of the given size in the middle of `rect`.
QRectF centred(const QRectF& rect, qreal width, qreal height);

}  // namespace Fenk::Paint
