#pragma once

#include <QString>
#include <Qt>

class QWidget;

namespace TestSupport {

/// The names of visible, enabled controls that Tab does not reach, and of those that show no focus ring;
/// empty when the window can be used by keys alone. Restores the focus.
QString outOfReach(QWidget* window);

/// Sends a key to the window, which may be deleted by it.
void press(QWidget* window, Qt::Key key, Qt::KeyboardModifiers modifiers = {});

}  // namespace TestSupport
