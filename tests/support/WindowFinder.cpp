#include "support/WindowFinder.h"

#include <xcb/xcb.h>

#include <QFile>
#include <cstdlib>
#include <memory>

#include "support/ChildProcess.h"

namespace TestSupport {

namespace {

struct FreeDeleter {
    void operator()(void* memory) const { std::free(memory); }
};
template <typename T>
using Reply = std::unique_ptr<T, FreeDeleter>;

/// One connection to the display, its root window, and the few requests that are needed here.
class Display {
public:
    Display() {
        int screen = 0;
        m_connection = xcb_connect(nullptr, &screen);
        if (!isOpen())
            return;
        xcb_screen_iterator_t it = xcb_setup_roots_iterator(xcb_get_setup(m_connection));
        while (screen-- > 0)
            xcb_screen_next(&it);
        m_root = it.data->root;
    }
    ~Display() { xcb_disconnect(m_connection); }
    Display(const Display&) = delete;
    Display& operator=(const Display&) = delete;

    bool isOpen() const { return xcb_connection_has_error(m_connection) == 0; }
    xcb_connection_t* connection() const { return m_connection; }
    xcb_window_t root() const { return m_root; }

    xcb_atom_t atom(const QByteArray& name) const {
        const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
            m_connection, xcb_intern_atom(m_connection, 0, quint16(name.size()), name.constData()), nullptr));
        return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    }

    QByteArray property(xcb_window_t window, const QByteArray& name) const {
        const quint32 maxWords = 16384;
        const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
            m_connection, xcb_get_property(m_connection, 0, window, atom(name), XCB_ATOM_ANY, 0, maxWords),
            nullptr));
        if (!reply)
            return {};
        return {static_cast<const char*>(xcb_get_property_value(reply.get())),
                xcb_get_property_value_length(reply.get())};
    }

    QVector<quint32> words(xcb_window_t window, const QByteArray& name) const {
        const QByteArray bytes = property(window, name);
        const auto* first = reinterpret_cast<const quint32*>(bytes.constData());
        return QVector<quint32>(first, first + bytes.size() / int(sizeof(quint32)));
    }

    WindowInfo info(xcb_window_t window) const {
        WindowInfo result;
        result.id = window;
        const QByteArray title = property(window, "_NET_WM_NAME");
        result.title = QString::fromUtf8(title.isEmpty() ? property(window, "WM_NAME") : title);
        result.pid = words(window, "_NET_WM_PID").value(0);
        return result;
    }

private:
    xcb_connection_t* m_connection = nullptr;
    xcb_window_t m_root = 0;
};

template <typename Predicate>
WindowInfo topmost(const QVector<WindowInfo>& windows, Predicate matches) {
    for (auto it = windows.crbegin(); it != windows.crend(); ++it) {
        if (matches(*it))
            return *it;
    }
    return {};
}

}  // namespace

QVector<WindowInfo> WindowFinder::windows() const {
    QVector<WindowInfo> result;
    const Display display;
    if (!display.isOpen())
        return result;
    for (const quint32 window : display.words(display.root(), "_NET_CLIENT_LIST_STACKING"))
        result.append(display.info(window));
    return result;
}

WindowInfo WindowFinder::byTitle(const QString& text) const {
    return topmost(windows(), [&](const WindowInfo& window) { return window.title.contains(text); });
}

QVector<WindowInfo> WindowFinder::byPid(qint64 pid) const {
    QVector<WindowInfo> result;
    for (const WindowInfo& window : windows()) {
        if (window.pid == pid)
            result.append(window);
    }
    return result;
}

WindowInfo WindowFinder::waitForTitle(const QString& text, int timeoutMs) const {
    WindowInfo found;
    waitUntil(
        [&] {
            found = byTitle(text);
            return found.id != 0;
        },
        timeoutMs);
    return found;
}

bool WindowFinder::waitUntilGone(quint32 id, int timeoutMs) const {
    return waitUntil(
        [&] { return topmost(windows(), [&](const WindowInfo& window) { return window.id == id; }).id == 0; },
        timeoutMs);
}

bool WindowFinder::close(quint32 id) const {
    const Display display;
    if (!display.isOpen())
        return false;
    xcb_client_message_event_t event = {};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = id;
    event.type = display.atom("_NET_CLOSE_WINDOW");
    event.data.data32[0] = XCB_CURRENT_TIME;
    event.data.data32[1] = 2;  // the request comes from a pager, which a window manager obeys
    xcb_send_event(display.connection(), 0, display.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&event));
    // Waits for an answer, so that the request is through before the connection closes.
    const Reply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(display.connection(), xcb_get_input_focus(display.connection()), nullptr));
    return reply != nullptr;
}

bool WindowFinder::closeAll(int timeoutMs) const {
    return waitUntil(
        [this] {
            const QVector<WindowInfo> open = windows();
            for (const WindowInfo& window : open)
                close(window.id);
            return open.isEmpty();
        },
        timeoutMs);
}

bool WindowFinder::hasWindowManager() const {
    const Display display;
    return display.isOpen() && !display.words(display.root(), "_NET_SUPPORTING_WM_CHECK").isEmpty();
}

QMap<QString, QString> environmentOf(qint64 pid) {
    QMap<QString, QString> result;
    QFile file(QString("/proc/%1/environ").arg(pid));
    if (!file.open(QIODevice::ReadOnly))
        return result;
    for (const QByteArray& entry : file.readAll().split('\0')) {
        const int equals = entry.indexOf('=');
        if (equals > 0)
            result.insert(QString::fromLocal8Bit(entry.left(equals)),
                          QString::fromLocal8Bit(entry.mid(equals + 1)));
    }
    return result;
}

}  // namespace TestSupport
