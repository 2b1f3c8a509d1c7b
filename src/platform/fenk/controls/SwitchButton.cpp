#include "fenk/controls/SwitchButton.h"

#include <QKeyEvent>
#include <QPainter>

#include "fenk/style/Color.h"
#include "fenk/style/Paint.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"

namespace Fenk {

SwitchButton::SwitchButton(QWidget* parent) : QAbstractButton(parent) {
    setCheckable(true);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
    setRingRadius(this, Tokens::SwitchHeight / 2);
    m_slide.setEasingCurve(QEasingCurve::OutCubic);
    connect(&m_slide, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        m_position = value.toReal();
        update();
    });
    connect(this, &QAbstractButton::toggled, this, &SwitchButton::slide);
    connect(Theme::instance(), &Theme::changed, this, qOverload<>(&QWidget::update));
}

QSize SwitchButton::sizeHint() const {
    return {Tokens::SwitchWidth, Tokens::SwitchHeight};
}

void SwitchButton::slide(bool on) {
    m_slide.stop();
    const qreal target = on ? 1 : 0;
    const int time = isVisible() ? Theme::instance()->duration(Tokens::HoverMs) : 0;
    if (time == 0) {
        m_position = target;
        update();
        return;
    }
    m_slide.setDuration(time);
    m_slide.setStartValue(m_position);
    m_slide.setEndValue(target);
    m_slide.start();
}

void SwitchButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Theme* theme = Theme::instance();
    const QRectF track = Paint::centred(rect(), Tokens::SwitchWidth, Tokens::SwitchHeight);
    const qreal radius = Tokens::SwitchHeight / 2.0;
    QColor off = mix(theme->color(Theme::Border), theme->color(Theme::Secondary), underMouse() ? 0.55 : 0.4);
    QColor ground = mix(off, theme->color(Theme::Accent), m_position);
    if (!isEnabled())
        ground = mix(theme->color(Theme::Sunken), theme->color(Theme::Border), isChecked() ? 1 : 0.6);
    else if (isDown())
        ground = Paint::step(ground);
    Paint::box(&painter, track, radius, ground);

    const qreal inset = 3;
    const qreal size = Tokens::SwitchHeight - 2 * inset;
    const qreal way = Tokens::SwitchWidth - 2 * inset - size;
    const qreal at = layoutDirection() == Qt::RightToLeft ? 1 - m_position : m_position;
    const QRectF knob(track.left() + inset + way * at, track.top() + inset, size, size);
    const QColor on = theme->color(Theme::OnAccent);
    const QColor ink = isEnabled() ? mix(theme->isDark() ? theme->color(Theme::Text) : on, on, m_position)
                                   : theme->color(theme->isDark() ? Theme::Disabled : Theme::Surface);
    Paint::box(&painter, knob, size / 2, ink);
}

void SwitchButton::keyPressEvent(QKeyEvent* event) {
    const int onKey = layoutDirection() == Qt::RightToLeft ? Qt::Key_Left : Qt::Key_Right;
    const int offKey = layoutDirection() == Qt::RightToLeft ? Qt::Key_Right : Qt::Key_Left;
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else if (event->key() == onKey || event->key() == offKey) {
        if (isChecked() != (event->key() == onKey))
            click();
    } else {
        QAbstractButton::keyPressEvent(event);
    }
}

bool SwitchButton::hitButton(const QPoint& position) const {
    return rect().contains(position);
}

}  // namespace Fenk
