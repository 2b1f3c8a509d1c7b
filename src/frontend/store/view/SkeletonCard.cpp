#include "store/view/SkeletonCard.h"

#include <QPainterPath>

#include "fenk/style/Paint.h"
#include "store/images/LoadingAnimation.h"

using namespace Fenk;

namespace {

/// Icon, name, stars, version, brief text, button; relative to the card.
constexpr QRect Blocks[] = {{10, 20, 56, 56},  {76, 13, 132, 14}, {76, 35, 64, 10},
                            {76, 53, 104, 10}, {76, 72, 200, 10}, {290, 34, 64, 28}};

}  // namespace

void SkeletonCard::paint(QPainter* painter, const QPoint& cell) {
    const Paint::Scope scope(painter);
    painter->translate(cell + CellOffset);
    QPainterPath shapes;
    for (const QRect& block : Blocks) {
        const int radius =
            block.height() > Tokens::CompactHeight ? Tokens::RadiusCard : Tokens::RadiusControl;
        shapes.addRoundedRect(block, qMin(block.height() / 2, radius), qMin(block.height() / 2, radius));
    }
    painter->setClipPath(shapes);
    // One band of light crosses the whole card.
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->drawPixmap(QRect(QPoint(), Card), LoadingAnimation::instance()->frame());
}
