#pragma once

#include <QString>
#include <Qt>

class QWidget;

namespace TestSupport {

/// Controls that can be seen and used, but that Tab does not come to, and those that have the focus without
/// the ring that says so; empty where a window can be used by keys alone. The focus is where it was then.
QString outOfReach(QWidget* window);

/// A key for the window, which may close it for good.
void press(QWidget* window, Qt::Key key, Qt::KeyboardModifiers modifiers = {});

}  // namespace TestSupport
