#include "fenk/controls/Spinner.h"

#include <QElapsedTimer>
#include <QPainter>

#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"

namespace Fenk {

namespace {

constexpr int FrameMs = 33;
constexpr int FullTurn = 360 * 16;
constexpr int Arc = 90 * 16;

/// One clock for all spinners, so that they rotate in step.
qint64 now() {
    static const QElapsedTimer clock = [] {
        QElapsedTimer timer;
        timer.start();
        return timer;
    }();
    return clock.elapsed();
}

}  // namespace

Spinner::Spinner(QWidget* parent) : QWidget(parent) {
    setAccessibleName(tr("Busy"));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_frames.setInterval(FrameMs);
    m_delay.setSingleShot(true);
    m_delay.setInterval(Tokens::SpinnerDelayMs);
    connect(&m_frames, &QTimer::timeout, this, qOverload<>(&QWidget::update));
    connect(&m_delay, &QTimer::timeout, this, &Spinner::start);
    connect(Theme::instance(), &Theme::changed, this, &Spinner::updateFrames);
}

QSize Spinner::sizeHint() const {
    return {Tokens::IconLarge, Tokens::IconLarge};
}

void Spinner::start() {
    m_delay.stop();
    m_playing = true;
    updateFrames();
}

void Spinner::startDelayed() {
    if (!m_playing)
        m_delay.start();
}

void Spinner::stop() {
    m_delay.stop();
    m_playing = false;
    updateFrames();
}

void Spinner::updateFrames() {
    if (m_playing && isVisible() && Theme::instance()->animationsEnabled())
        m_frames.start();
    else
        m_frames.stop();
    update();
}

void Spinner::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    updateFrames();
}

void Spinner::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    updateFrames();
}

void Spinner::paintEvent(QPaintEvent*) {
    if (!m_playing)
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Theme* theme = Theme::instance();
    const qreal side = qMin(width(), height());
    const qreal stroke = qMax(2.0, side / 10);
    const QRectF ring((width() - side + stroke) / 2, (height() - side + stroke) / 2, side - stroke,
                      side - stroke);
    painter.setPen(QPen(theme->color(Theme::Border), stroke));
    painter.drawEllipse(ring);
    const qint64 turned = theme->animationsEnabled() ? now() % Tokens::SpinnerTurnMs : 0;
    painter.setPen(QPen(theme->color(Theme::Accent), stroke, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(ring, 90 * 16 - int(turned * FullTurn / Tokens::SpinnerTurnMs), -Arc);
}

}  // namespace Fenk
