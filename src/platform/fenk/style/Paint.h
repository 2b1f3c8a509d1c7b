#pragma once

#include <QColor>
#include <QPainter>
#include <QStyleOption>

#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"

/// Shapes that every painter uses. All leave the painter as they found it.
namespace Fenk::Paint {

/// Saves the painter, turns smooth edges on, and restores it.
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

/// One step towards the text colour: the ground of something pressed.
QColor step(const QColor& ground);

/// A box whose border lies inside `rect`; an invalid stroke means none.
void box(QPainter* painter, const QRectF& rect, qreal radius, const QColor& fill,
         const QColor& stroke = QColor());

/// A ring inside `rect`, for items that cannot have one outside.
void ring(QPainter* painter, const QRectF& rect, qreal radius);

/// What floats throws this shadow; only what lies outside of `rect` is for the eye.
void shadow(QPainter* painter, const QRect& rect, qreal radius);

void tick(QPainter* painter, const QRectF& rect, const QColor& color);
void chevron(QPainter* painter, const QRectF& rect, Qt::ArrowType direction, const QColor& color);

/// A rectangle of the given size in the middle of `rect`.
QRectF centred(const QRectF& rect, qreal width, qreal height);

}  // namespace Fenk::Paint
