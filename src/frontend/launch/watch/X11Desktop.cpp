#include "launch/watch/X11Desktop.h"

#include <atomic>
#include <climits>
#include <memory>
#include <mutex>

// Included last, since its macros clash with names in the other headers.
#include <X11/Xatom.h>
#include <X11/Xlib.h>

namespace {

// The largest number of 32-bit items whose size in bytes a server can handle.
constexpr long WholeList = 0x1fffffff;
// A client that changes properties all the time must not keep the thread from stopping.
constexpr int MaximumEvents = 1000;

thread_local X11Desktop* desktopOfThread = nullptr;

}  // namespace

/// Xlib has one handler of each kind per process, which Qt uses too. It is called in the thread whose request
/// failed. Our handlers are installed while any of our connections exists, and pass on errors of other
/// connections. If each thread installed and removed handlers of its own, overlapping threads would restore
/// the wrong ones.
struct X11ErrorHandlers {
    static void install() {
        const std::lock_guard<std::mutex> lock(mutex);
        if (users++ > 0)
            return;
        const XErrorHandler present = XSetErrorHandler(onError);
        if (present != onError)
            previousOnError = present;
        const XIOErrorHandler presentOnLoss = XSetIOErrorHandler(onLoss);
        if (presentOnLoss != onLoss)
            previousOnLoss = presentOnLoss;
    }

    static void remove() {
        const std::lock_guard<std::mutex> lock(mutex);
        if (--users > 0)
            return;
        // A handler installed on top of ours stays; it passes on errors of other connections.
        const XErrorHandler present = XSetErrorHandler(previousOnError);
        if (present != onError)
            XSetErrorHandler(present);
        const XIOErrorHandler presentOnLoss = XSetIOErrorHandler(previousOnLoss);
        if (presentOnLoss != onLoss)
            XSetIOErrorHandler(presentOnLoss);
    }

    /// Xlib exits the process unless this returns as well as onLoss().
    static void onExit(Display*, void*) {}

private:
    static bool isOwn(Display* display) { return desktopOfThread && desktopOfThread->m_display == display; }

    static int onError(Display* display, XErrorEvent* event) {
        const XErrorHandler previous = previousOnError;
        if (!isOwn(display))
            return previous ? previous(display, event) : 0;
        X11Desktop& desktop = *desktopOfThread;
        if (!desktop.m_isQuerying)
            desktop.m_hasFailed = true;
        else if (event->error_code == BadWindow || event->error_code == BadDrawable)
            desktop.m_windowIsGone = true;
        return 0;
    }

    static int onLoss(Display* display) {
        const XIOErrorHandler previous = previousOnLoss;
        if (!isOwn(display))
            return previous ? previous(display) : 0;
        desktopOfThread->m_isLost = true;
        return 0;
    }

    static std::mutex mutex;
    static int users;
    static std::atomic<XErrorHandler> previousOnError;
    static std::atomic<XIOErrorHandler> previousOnLoss;
};

std::mutex X11ErrorHandlers::mutex;
int X11ErrorHandlers::users = 0;
std::atomic<XErrorHandler> X11ErrorHandlers::previousOnError{nullptr};
std::atomic<XIOErrorHandler> X11ErrorHandlers::previousOnLoss{nullptr};

/// A query about a window that may have vanished, which the reply reports: checking first would take three
/// more round trips, and the window could still vanish in between.
class X11Desktop::Query {
public:
    explicit Query(X11Desktop& desktop) : m_desktop(desktop) {
        desktop.m_isQuerying = true;
        desktop.m_windowIsGone = false;
    }
    ~Query() { m_desktop.m_isQuerying = false; }

private:
    X11Desktop& m_desktop;
};

void X11Desktop::prepareThreads() {
    static const Status ready = XInitThreads();
    Q_UNUSED(ready)
}

X11Desktop::X11Desktop() : m_display(XOpenDisplay(nullptr)) {
    if (!m_display)
        return;
    desktopOfThread = this;
    X11ErrorHandlers::install();
    XSetIOErrorExitHandler(m_display, X11ErrorHandlers::onExit, nullptr);
    m_root = XDefaultRootWindow(m_display);
    m_listName = XInternAtom(m_display, "_NET_CLIENT_LIST_STACKING", False);
    m_processName = XInternAtom(m_display, "_NET_WM_PID", False);
    XSelectInput(m_display, m_root, PropertyChangeMask);
}

X11Desktop::~X11Desktop() {
    if (!m_display)
        return;
    XCloseDisplay(m_display);
    X11ErrorHandlers::remove();
    desktopOfThread = nullptr;
}

/// One change causes several events; consume all that have arrived.
bool X11Desktop::takePropertyChange() {
    XEvent event;
    int taken = 0;
    while (isOpen() && taken < MaximumEvents &&
           XCheckWindowEvent(m_display, m_root, PropertyChangeMask, &event))
        ++taken;
    return taken > 0;
}

QVector<X11Desktop::Window> X11Desktop::windows() {
    return numbers(m_root, m_listName, AnyPropertyType, WholeList);
}

qint64 X11Desktop::processOf(Window window) {
    // Xlib sign-extends 32-bit values.
    const quint32 number = quint32(numbers(window, m_processName, XA_CARDINAL, 1).value(0));
    return number <= INT_MAX ? number : 0;
}

QSize X11Desktop::sizeOf(Window window) {
    const Query query(*this);
    ::Window root;
    int x, y;
    unsigned width, height, border, depth;
    if (!isOpen() || !XGetGeometry(m_display, window, &root, &x, &y, &width, &height, &border, &depth) ||
        m_windowIsGone)
        return {};
    return {int(width), int(height)};
}

bool X11Desktop::activate(Window window) {
    if (!isOpen())
        return false;
    const Query query(*this);
    constexpr long FromPager = 2;  // a request from an application may only make the taskbar entry blink
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom(m_display, "_NET_ACTIVE_WINDOW", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = FromPager;
    event.xclient.data.l[1] = CurrentTime;
    XSendEvent(m_display, m_root, False, SubstructureRedirectMask | SubstructureNotifyMask, &event);
    XSync(m_display, False);
    return isOpen();
}

QVector<unsigned long> X11Desktop::numbers(Window window, unsigned long name, unsigned long type,
                                           long limit) {
    if (!isOpen())
        return {};
    const Query query(*this);
    Atom foundType = None;
    int format = 0;
    unsigned long count = 0, left = 0;
    unsigned char* data = nullptr;
    const int status = XGetWindowProperty(m_display, window, name, 0, limit, False, type, &foundType, &format,
                                          &count, &left, &data);
    const std::unique_ptr<unsigned char, decltype(&XFree)> owner(data, &XFree);
    if (status != Success || m_windowIsGone || format != 32 || !data)
        return {};
    const auto* first = reinterpret_cast<const unsigned long*>(data);
    return QVector<unsigned long>(first, first + count);
}
