#pragma once

#include <QSize>
#include <QVector>

struct _XDisplay;

/// A thread's own connection to the default display, for looking at windows that others have made. Made, used
/// and destroyed on one thread; several may live on several threads at once, beside Qt's connection.
///
/// Windows may vanish at any moment: a query then answers as for a window without the property. Neither an X
/// error of this connection nor the loss of the server ends the process. Errors of other connections still
/// reach whoever has been responsible for them before.
class X11Desktop {
public:
    using Window = unsigned long;

    X11Desktop();
    ~X11Desktop();
    X11Desktop(const X11Desktop&) = delete;
    X11Desktop& operator=(const X11Desktop&) = delete;

    /// Has to be called before the first thread that makes a connection is started.
    static void prepareThreads();

    /// False without a display, and from the moment on when the server is lost.
    bool isOpen() const { return m_display && !m_isLost; }
    /// Whether there was an X error other than one that tells of a window's end.
    bool hasFailed() const { return m_hasFailed; }

    /// True when a property of the root window has changed since the last call; does not wait.
    bool takePropertyChange();
    /// The window manager's list, bottom to top. Empty where nobody keeps one.
    QVector<Window> windows();
    /// The number that the window gives for its process, which is any that its maker likes; 0 without.
    qint64 processOf(Window window);
    QSize sizeOf(Window window);
    /// Asks the window manager, as a taskbar does; false when there is no server to ask.
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
