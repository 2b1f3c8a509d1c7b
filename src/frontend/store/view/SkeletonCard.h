#pragma once

#include <QPoint>
#include <QSize>

class QPainter;

/// The shape of a card of the store, and what stands for one until its contents are there.
namespace SkeletonCard {

constexpr QSize Card(364, 96);
constexpr QSize Pitch(367, 104);    ///< from card to card: two of them fit into the main window
constexpr QPoint CellOffset(4, 4);  ///< a card's place in its cell, which leaves room for the focus ring
constexpr int IconEdge = 56;
constexpr int SideMargin = 10;
constexpr int TopMargin = 6;
constexpr int Spacing = 6;
constexpr int StarsHeight = 16;

/// At the top left corner of a cell, in the present frame of the LoadingAnimation.
void paint(QPainter* painter, const QPoint& cell);

}  // namespace SkeletonCard
