#pragma once

#include <QRect>
#include <QStyle>

class QPainter;
class QStyleOptionProgressBar;
class QStyleOptionSlider;

/// Scroll bars, sliders and progress bars.
namespace Fenk::BarPainter {

void scrollBar(QPainter* painter, const QStyleOptionSlider* option, qreal hover);
QRect scrollBarPart(const QStyleOptionSlider* option, QStyle::SubControl part);

void slider(QPainter* painter, const QStyleOptionSlider* option, const QRect& handle, qreal hover);

/// The track with what is done of it; without a range a piece that wanders with time, or stands when nothing
/// may move.
void progress(QPainter* painter, const QStyleOptionProgressBar* option);
void progressLabel(QPainter* painter, const QStyleOptionProgressBar* option);

/// Track and number side by side.
QRect progressTrack(const QStyleOptionProgressBar* option);

}  // namespace Fenk::BarPainter
