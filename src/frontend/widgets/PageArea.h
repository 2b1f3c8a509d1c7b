#pragma once

class QScrollArea;
class QWidget;

/// A page of rows in a window whose height may be less than they need: scrolls up and down, also to the
/// control that gets the focus, without a frame, a ground or a stop for Tab of its own.
namespace PageArea {

/// Makes the area such a page.
void setUp(QScrollArea* area, QWidget* content);

/// A new area around the content.
QScrollArea* around(QWidget* content);

}  // namespace PageArea
