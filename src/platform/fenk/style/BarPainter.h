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

/// The track and the completed part; without a range, a part that moves with time, or is static if animations
/// are off.
void progress(QPainter* painter, const QStyleOptionProgressBar* option);
void progressLabel(QPainter* painter, const QStyleOptionProgressBar* option);

/// The track beside the number.
QRect progressTrack(const QStyleOptionProgressBar* option);

}  // namespace Fenk::BarPainter
