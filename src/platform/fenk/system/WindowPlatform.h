#pragma once

#include <QPoint>
#include <optional>

class QWindow;

/// What windows ask of the windowing system beyond Qt. Everywhere but on X11 with a compositor these do the
/// plain thing.
namespace Fenk::WindowPlatform {

/// Whether transparent parts of a window show what is behind it.
bool compositing();

/// For pictures without a screen: answer as if there were a compositor.
void assumeCompositing(bool assumed);

/// Asks the compositor to blur what shines through the window; compositors that cannot ignore it.
void setBlurBehind(QWindow* window, bool blurred);

/// Where the window's content really is on the screen, in device-independent pixels; nothing where the system
/// cannot say.
std::optional<QPoint> actualPosition(const QWindow* window);

}  // namespace Fenk::WindowPlatform
