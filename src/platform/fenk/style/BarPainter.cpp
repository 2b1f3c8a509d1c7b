#include "fenk/style/BarPainter.h"

#include <QElapsedTimer>
#include <QStyleOption>
#include <QtMath>

#include "fenk/style/Color.h"
#include "fenk/style/Paint.h"

namespace Fenk::BarPainter {

namespace {

using Paint::color;

constexpr qreal BusyShare = 0.3;

qreal busyPhase() {
    static const QElapsedTimer clock = [] {
        QElapsedTimer timer;
        timer.start();
        return timer;
    }();
    if (!Theme::instance()->animationsEnabled())
        return 0.5;
    return (clock.elapsed() % (2 * Tokens::SpinnerTurnMs)) / qreal(2 * Tokens::SpinnerTurnMs);
}

bool hasText(const QStyleOptionProgressBar* option) {
    return option->textVisible && !option->text.isEmpty() && option->orientation == Qt::Horizontal;
}

}  // namespace

QRect scrollBarPart(const QStyleOptionSlider* option, QStyle::SubControl part) {
    const bool flat = option->orientation == Qt::Horizontal;
    const int length = flat ? option->rect.width() : option->rect.height();
    const int range = option->maximum - option->minimum;
    int thumb = length;
    if (range > 0)
        thumb = int(qint64(length) * option->pageStep / qMax(1, range + option->pageStep));
    thumb = qBound(qMin(Tokens::ScrollBarThumbMin, length), thumb, length);
    const int start = QStyle::sliderPositionFromValue(
        option->minimum, option->maximum, option->sliderPosition, length - thumb, option->upsideDown);
    const auto piece = [option, flat](int from, int size) {
        const QRect r =
            flat ? QRect(option->rect.left() + from, option->rect.top(), size, option->rect.height())
                 : QRect(option->rect.left(), option->rect.top() + from, option->rect.width(), size);
        return QStyle::visualRect(flat ? option->direction : Qt::LeftToRight, option->rect, r);
    };
    switch (part) {
        case QStyle::SC_ScrollBarSlider:
            return piece(start, thumb);
        case QStyle::SC_ScrollBarGroove:
            return option->rect;
        case QStyle::SC_ScrollBarSubPage:
            return piece(0, start);
        case QStyle::SC_ScrollBarAddPage:
            return piece(start + thumb, length - start - thumb);
        default:
            return {};
    }
}

void scrollBar(QPainter* painter, const QStyleOptionSlider* option, qreal hover) {
    if (option->maximum <= option->minimum)
        return;
    const QRectF room = scrollBarPart(option, QStyle::SC_ScrollBarSlider);
    const bool flat = option->orientation == Qt::Horizontal;
    const qreal width = Tokens::ScrollBarThumb + 2 * hover;
    const QRectF thumb = flat ? Paint::centred(room, room.width() - Tokens::Space4, width)
                              : Paint::centred(room, width, room.height() - Tokens::Space4);
    const bool held = Paint::pressed(option) && option->activeSubControls == QStyle::SC_ScrollBarSlider;
    const QColor ink = mix(color(Theme::Border), color(Theme::Secondary), held ? 0.9 : 0.3 + 0.3 * hover);
    Paint::box(painter, thumb, width / 2, ink);
}

void slider(QPainter* painter, const QStyleOptionSlider* option, const QRect& handle, qreal hover) {
    const bool flat = option->orientation == Qt::Horizontal;
    const bool usable = Paint::enabled(option);
    const QRectF all = option->rect;
    const QRectF track = flat ? Paint::centred(all, all.width() - Tokens::Space4, Tokens::SliderTrack)
                              : Paint::centred(all, Tokens::SliderTrack, all.height() - Tokens::Space4);
    Paint::box(painter, track, Tokens::SliderTrack / 2.0,
               mix(color(Theme::Sunken), color(Theme::Border), 0.8));
    QRectF done = track;
    const bool reversed = option->upsideDown;
    const QPointF middle = QRectF(handle).center();
    if (flat && reversed)
        done.setLeft(middle.x());
    else if (flat)
        done.setRight(middle.x());
    else if (reversed)
        done.setTop(middle.y());
    else
        done.setBottom(middle.y());
    Paint::box(painter, done, Tokens::SliderTrack / 2.0, color(usable ? Theme::Accent : Theme::Border));

    const QRectF knob = Paint::centred(handle, Tokens::SliderHandle, Tokens::SliderHandle);
    Paint::box(painter, knob, Tokens::SliderHandle / 2.0, color(usable ? Theme::Surface : Theme::Sunken),
               color(usable ? Theme::Accent : Theme::Border));
    if (usable) {
        const qreal dot = Paint::pressed(option) ? Tokens::Space12 : Tokens::Space8 + 2 * hover;
        Paint::box(painter, Paint::centred(knob, dot, dot), dot / 2, color(Theme::Accent));
    }
}

QRect progressTrack(const QStyleOptionProgressBar* option) {
    QRect room = option->rect;
    if (hasText(option)) {
        const int width = qMax(option->fontMetrics.horizontalAdvance("100%"),
                               option->fontMetrics.horizontalAdvance(option->text));
        room.setWidth(room.width() - width - Tokens::Space12);
    }
    return QStyle::visualRect(option->direction, option->rect, room);
}

void progress(QPainter* painter, const QStyleOptionProgressBar* option) {
    const bool flat = option->orientation == Qt::Horizontal;
    const QRectF room = progressTrack(option);
    const QRectF track = flat ? Paint::centred(room, room.width(), Tokens::ProgressHeight)
                              : Paint::centred(room, Tokens::ProgressHeight, room.height());
    const qreal radius = Tokens::ProgressHeight / 2.0;
    const Paint::Scope scope(painter);
    Paint::box(painter, track, radius, mix(color(Theme::Sunken), color(Theme::Border), 0.7));

    const qreal length = flat ? track.width() : track.height();
    qreal from = 0;
    qreal size = 0;
    if (option->minimum >= option->maximum) {
        size = length * BusyShare;
        from = (length + size) * busyPhase() - size;
    } else {
        const qreal share =
            (qreal(option->progress) - option->minimum) / (qreal(option->maximum) - option->minimum);
        size = share <= 0 ? 0 : qMax(qreal(Tokens::ProgressHeight), length * qMin(share, qreal(1)));
    }
    const qreal start = qMax(qreal(0), from);
    size = qMin(length, from + size) - start;
    if (size <= 0)
        return;
    const bool backwards = option->invertedAppearance != (flat && option->direction == Qt::RightToLeft);
    const qreal at = backwards == flat ? length - start - size : start;
    const QRectF done = flat ? QRectF(track.left() + at, track.top(), size, track.height())
                             : QRectF(track.left(), track.top() + at, track.width(), size);
    Paint::box(painter, done, radius, color(Paint::enabled(option) ? Theme::Accent : Theme::Disabled));
}

void progressLabel(QPainter* painter, const QStyleOptionProgressBar* option) {
    if (!hasText(option))
        return;
    const Paint::Scope scope(painter);
    painter->setPen(color(Paint::enabled(option) ? Theme::Secondary : Theme::Disabled));
    painter->drawText(option->rect,
                      Qt::AlignVCenter | QStyle::visualAlignment(option->direction, Qt::AlignRight),
                      option->text);
}

}  // namespace Fenk::BarPainter
