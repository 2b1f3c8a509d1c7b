#pragma once

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

}  // namespace Fenk::WindowPlatform
