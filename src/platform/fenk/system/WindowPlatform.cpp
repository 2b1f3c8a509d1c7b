#include "fenk/system/WindowPlatform.h"

#include <xcb/xcb.h>

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>
#include <QX11Info>
#include <cstdlib>
#include <memory>

namespace Fenk::WindowPlatform {

namespace {

bool s_assumed = false;

xcb_atom_t atom(xcb_connection_t* connection, const QByteArray& name) {
    const auto cookie = xcb_intern_atom(connection, 0, uint16_t(name.size()), name.constData());
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        xcb_intern_atom_reply(connection, cookie, nullptr), &std::free);
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

}  // namespace

bool compositing() {
    if (s_assumed || QGuiApplication::platformName().startsWith("wayland"))
        return true;
    return QX11Info::isPlatformX11() && QX11Info::isCompositingManagerRunning();
}

void assumeCompositing(bool assumed) {
    s_assumed = assumed;
}

void setBlurBehind(QWindow* window, bool blurred) {
    if (!window || !QX11Info::isPlatformX11())
        return;
    xcb_connection_t* connection = QX11Info::connection();
    const xcb_atom_t property = atom(connection, "_KDE_NET_WM_BLUR_BEHIND_REGION");
    if (property == XCB_ATOM_NONE)
        return;
    const auto id = xcb_window_t(window->winId());
    // An empty region means the whole window.
    if (blurred)
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, id, property, XCB_ATOM_CARDINAL, 32, 0,
                            nullptr);
    else
        xcb_delete_property(connection, id, property);
    xcb_flush(connection);
}

std::optional<QPoint> actualPosition(const QWindow* window) {
    if (!window || !window->isVisible() || !QX11Info::isPlatformX11())
        return std::nullopt;
    xcb_connection_t* connection = QX11Info::connection();
    const auto cookie = xcb_translate_coordinates(connection, xcb_window_t(window->winId()),
                                                  xcb_window_t(QX11Info::appRootWindow()), 0, 0);
    const std::unique_ptr<xcb_translate_coordinates_reply_t, decltype(&std::free)> reply(
        xcb_translate_coordinates_reply(connection, cookie, nullptr), &std::free);
    if (!reply)
        return std::nullopt;
    const QPoint origin = window->screen()->geometry().topLeft();
    return (QPoint(reply->dst_x, reply->dst_y) - origin) / window->devicePixelRatio() + origin;
}

}  // namespace Fenk::WindowPlatform
