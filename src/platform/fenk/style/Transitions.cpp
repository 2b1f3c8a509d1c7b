#include "fenk/style/Transitions.h"

#include <QEasingCurve>
#include <QProgressBar>
#include <QWidget>
#include <algorithm>

#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"

namespace Fenk {

namespace {
constexpr int FrameMs = 16;
}

Transitions::Transitions(QObject* parent) : QObject(parent) {
    m_timer.setInterval(FrameMs);
    connect(&m_timer, &QTimer::timeout, this, &Transitions::tick);
}

qreal Transitions::valueOf(const Fade& fade) const {
    const qreal target = fade.target ? 1 : 0;
    if (!fade.since.isValid() || !Theme::instance()->animationsEnabled())
        return target;
    const qreal part = std::min(qreal(1), fade.since.elapsed() / qreal(Tokens::HoverMs));
    return fade.from + (target - fade.from) * QEasingCurve(QEasingCurve::OutCubic).valueForProgress(part);
}

qreal Transitions::hover(const QWidget* widget, bool over) {
    if (!widget)
        return over ? 1 : 0;
    auto found = m_fades.find(widget);
    if (found == m_fades.end()) {
        found = m_fades.insert(widget, Fade{over ? qreal(1) : qreal(0), over, {}});
        connect(widget, &QObject::destroyed, this, [this](QObject* object) { m_fades.remove(object); });
    } else if (found->target != over) {
        found->from = valueOf(*found);
        found->target = over;
        found->since.start();
        m_timer.start();
    }
    return valueOf(*found);
}

void Transitions::watchBusyBar(QWidget* bar) {
    if (m_bars.contains(bar))
        return;
    m_bars.append(bar);
    connect(bar, &QObject::destroyed, this, [this](QObject* object) {
        m_bars.erase(std::remove(m_bars.begin(), m_bars.end(), object), m_bars.end());
    });
    m_timer.start();
}

void Transitions::tick() {
    bool moving = false;
    for (auto fade = m_fades.begin(); fade != m_fades.end(); ++fade) {
        if (!fade->since.isValid())
            continue;
        if (fade->since.elapsed() > Tokens::HoverMs)
            fade->since.invalidate();
        moving = true;
        const_cast<QWidget*>(static_cast<const QWidget*>(fade.key()))->update();
    }
    // A bar that has a range or is hidden is removed; painting its busy state adds it again.
    for (QWidget* widget : QList<QWidget*>(m_bars)) {
        const auto* bar = qobject_cast<QProgressBar*>(widget);
        if (!bar || bar->minimum() < bar->maximum() || !bar->isVisible() ||
            !Theme::instance()->animationsEnabled()) {
            m_bars.removeAll(widget);
            continue;
        }
        moving = true;
        widget->update();
    }
    if (!moving)
        m_timer.stop();
}

}  // namespace Fenk
