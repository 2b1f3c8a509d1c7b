#pragma once

#include <QPoint>
#include <optional>

class QWindow;

/// Window system features beyond Qt, on X11 with a compositor. Elsewhere the functions do nothing or return
/// the default.
namespace Fenk::WindowPlatform {

/// Whether transparent parts of a window show what is behind it.
bool compositing();

/// For screenshots: assume a compositor.
void assumeCompositing(bool assumed);

/// Asks the compositor to blur what is behind the window; not every compositor can.
void setBlurBehind(QWindow* window, bool blurred);

/// The actual position of the window's content on the screen, in device-independent pixels; empty if unknown.
std::optional<QPoint> actualPosition(const QWindow* window);

}  // namespace Fenk::WindowPlatform
