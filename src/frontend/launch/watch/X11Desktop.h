#pragma once

#include <QSize>
#include <QVector>

struct _XDisplay;

/// A connection to the default display for one thread, for inspecting windows of other clients. Create, use
/// and destroy it in one thread; several threads may have one each, besides Qt's connection.
///
/// Windows may vanish at any time: a query then returns what it returns for a window without the property.
/// Neither X errors of this connection nor the loss of the server end the process. Errors of other
/// connections still reach their own handlers.
class X11Desktop {
public:
    using Window = unsigned long;

    X11Desktop();
    ~X11Desktop();
    X11Desktop(const X11Desktop&) = delete;
    X11Desktop& operator=(const X11Desktop&) = delete;

    /// Call before the first thread that opens a connection starts.
    static void prepareThreads();

    /// False without a display and after the connection to the server is lost.
    bool isOpen() const { return m_display && !m_isLost; }
    /// Whether there was an X error other than for a window that has vanished.
    bool hasFailed() const { return m_hasFailed; }

    /// Whether a property of the root window has changed since the last call. Does not block.
    bool takePropertyChange();
    /// The window manager's list, bottom to top. Empty without such a list.
    QVector<Window> windows();
    /// The process id that the client has set, which may be wrong; 0 if unset.
    qint64 processOf(Window window);
    QSize sizeOf(Window window);
    /// Asks the window manager to activate the window, as a taskbar does; false without a server.
    bool activate(Window window);

private:
    class Query;
    friend struct X11ErrorHandlers;

    QVector<unsigned long> numbers(Window window, unsigned long name, unsigned long type, long limit);

    _XDisplay* m_display = nullptr;
    Window m_root = 0;
    unsigned long m_listName = 0;
    unsigned long m_processName = 0;
    bool m_isQuerying = false;
    bool m_windowIsGone = false;  ///< by the last query
    bool m_hasFailed = false;
    bool m_isLost = false;
};
