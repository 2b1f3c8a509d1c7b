#include "feedback/rating/starContainer.h"

#include "fenk/style/Paint.h"
#include "fenk/style/WidgetLook.h"
#include "programs/StarShape.h"

using namespace Fenk;

namespace {
constexpr qreal Radius = 14;
}

starContainer::starContainer(int index, QWidget* parent) : QRadioButton(parent), m_index(index) {
    setObjectName(QString("applyscore_dialog_star_%1").arg(index));
    setAccessibleName(tr("%1 of 5 stars").arg(index));
    setToolTip(accessibleName());
    setFixedSize(sizeHint());
    setRingRadius(this, Tokens::RadiusControl);
}

QSize starContainer::sizeHint() const {
    return {Tokens::RowHeight, Tokens::ControlHeight};
}

void starContainer::handleStar(int score) {
    m_isLit = m_index <= score;
    update();
}

void starContainer::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Paint::Scope scope(&painter);
    const Theme::Role role = m_isLit && isEnabled() ? Theme::Warning : Theme::Disabled;
    painter.setPen(QPen(Paint::color(role), Tokens::IconStroke, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(m_isLit ? QBrush(Paint::color(role)) : QBrush());
    painter.drawPolygon(starShape(QRectF(rect()).center(), Radius));
}

void starContainer::enterEvent(QEvent* event) {
    QRadioButton::enterEvent(event);
    Q_EMIT hovered(isEnabled() ? m_index : 0);
}

void starContainer::leaveEvent(QEvent* event) {
    QRadioButton::leaveEvent(event);
    Q_EMIT hovered(0);
}
