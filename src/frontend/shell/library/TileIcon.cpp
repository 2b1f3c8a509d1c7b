#include "shell/library/TileIcon.h"

#include <QPainter>

#include "fenk/style/Paint.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"

using namespace Fenk;

namespace {
constexpr int DotSize = 10;
}

TileIcon::TileIcon(QWidget* parent) : QWidget(parent) {
    setAccessibleName("appitem_icon");
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFixedSize(Tokens::IconTile, Tokens::IconTile);
}

void TileIcon::setPicture(const QPixmap& picture) {
    m_picture = picture;
    update();
}

void TileIcon::setDot(Dot dot) {
    m_dot = dot;
    update();
}

void TileIcon::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (m_picture.isNull()) {
        Paint::box(&painter, rect(), Tokens::RadiusCard, Paint::color(Theme::Sunken));
    } else {
        QRectF place(QPointF(), QSizeF(m_picture.size()) / devicePixelRatioF());
        place.moveCenter(QRectF(rect()).center());
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawPixmap(place, m_picture, m_picture.rect());
    }
    if (m_dot == Dot::None)
        return;
    const QRectF dot(width() - DotSize - 1, height() - DotSize - 1, DotSize, DotSize);
    Paint::box(&painter, dot.adjusted(-2, -2, 2, 2), DotSize, Paint::color(Theme::Surface));
    Paint::box(&painter, dot, DotSize / 2.0,
               Paint::color(m_dot == Dot::Running ? Theme::Success : Theme::Warning));
    if (m_dot == Dot::Orphaned)
        Paint::box(&painter, dot.adjusted(2, 2, -2, -2), DotSize, Paint::color(Theme::Surface));
}
