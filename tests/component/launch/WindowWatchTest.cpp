#include <QtTest>
#include <memory>

#include "launch/watch/X11FindWindowThread.h"
#include "launch/watch/X11WaitWineProgramThread.h"
#include "support/ChildProcess.h"
#include "support/EnvironmentGuard.h"
#include "support/XSession.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>

using namespace TestSupport;

namespace {

int strangersErrors = 0;
int countError(Display*, XErrorEvent*) {
    return ++strangersErrors;
}

/// A desktop without a window manager, on which the test itself sets the list of windows.
class Desktop {
public:
    Desktop() : m_display(XOpenDisplay(nullptr)) {}
    ~Desktop() { XCloseDisplay(m_display); }

    /// A window of a process, whose number is stored in 32 bits or in another format.
    Window window(unsigned width, unsigned height, qint64 pid, int format = 32) {
        const Window made =
            XCreateSimpleWindow(m_display, DefaultRootWindow(m_display), 0, 0, width, height, 0, 0, 0);
        set(made, pid ? "_NET_WM_PID" : "_NO_PID", {static_cast<unsigned long>(pid)}, format);
        return made;
    }
    void destroy(Window window) { XDestroyWindow(m_display, window); }
    void list(const std::vector<unsigned long>& windows) {
        set(DefaultRootWindow(m_display), "_NET_CLIENT_LIST_STACKING", windows);
        XSync(m_display, False);
    }
    void fail() { XDestroyWindow(m_display, 1), XSync(m_display, False); }

private:
    void set(Window window, const char* name, const std::vector<unsigned long>& numbers, int format = 32) {
        XChangeProperty(m_display, window, XInternAtom(m_display, name, False), XA_CARDINAL, format,
                        PropModeReplace, reinterpret_cast<const unsigned char*>(numbers.data()),
                        int(numbers.size()));
    }
    Display* m_display;
};

}  // namespace

/// The watchers on a real X server; copies of "sleep" under the name of Wine's loader stand for Wine.
class WindowWatchTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    std::unique_ptr<XSession> m_session;

    static auto start(const QString& file, const QString& prefix, const QString& uuid) {
        auto process = std::make_unique<ChildProcess>();
        process->setVariable("WINEPREFIX", prefix);
        if (!uuid.isNull())
            process->setVariable("_CXB_WINE_PROGRAM_UUID", uuid);
        process->start(file, {"600"});
        process->waitForStarted();
        return process;
    }
    auto startWine(const QString& prefix, const QString& uuid) const {
        return start(m_dir.filePath("wine64-preloader"), prefix, uuid);
    }

private Q_SLOTS:
    void initTestCase() {
        QVERIFY(QFile::copy("/bin/sleep", m_dir.filePath("wine64-preloader")));
        QVERIFY(QDir(m_dir.path()).mkdir("bottle"));
        QVERIFY(QFile::link("bottle", m_dir.filePath("link")));
        m_session = std::make_unique<XSession>();
        if (!m_session->isRunning())
            QSKIP("no X server on this machine");
    }

    void programsAreReported() {
        const auto wine = startWine("/p", "seen=1"), other = startWine("/p", "small");
        const auto nameless = startWine("/p", QString()), plain = start("/bin/sleep", "/p", "plain");
        Desktop desktop;
        const qint64 small = other->processId();
        std::vector<unsigned long> windows{desktop.window(120, 300, small), desktop.window(300, 120, small)};
        windows.push_back(desktop.window(300, 300, small, 8));
        for (const qint64 pid : {small + (1LL << 31), 0LL, plain->processId(), nameless->processId()})
            windows.push_back(desktop.window(300, 300, pid));
        windows.push_back(desktop.window(121, 121, wine->processId()));
        const XErrorHandler before = XSetErrorHandler(countError);
        {
            X11WaitWineProgramThread thread(nullptr);
            QStringList reports;
            const QObject receiver;
            connect(&thread, &X11WaitWineProgramThread::winpopuped, &receiver,
                    [&reports](const QString& uuid) { reports << uuid; });
            thread.start();
            thread.stop();
            QVERIFY(thread.wait(10000));
            thread.start();
            const auto isReported = [&] {
                desktop.list(windows);
                return !reports.isEmpty();
            };
            // Windows that are destroyed while the thread reads them, and an X error of another connection.
            for (int i = 0; i < 200; ++i) {
                windows.insert(windows.begin(), desktop.window(100, 100, small));
                desktop.list(windows);
                desktop.destroy(windows.front());
            }
            desktop.fail();
            reports.clear();
            QVERIFY(waitUntil(isReported));
            reports.removeDuplicates();
            QCOMPARE(reports, QStringList{"seen=1"});
        }
        desktop.fail();
        QCOMPARE(strangersErrors, 2);
        QVERIFY(XSetErrorHandler(before) == countError);
    }

    void bottleIsFound() {
        const QByteArray path = QFile::encodeName(m_dir.filePath("bottle"));
        const auto wine = startWine(m_dir.filePath("link"), QString()), other = startWine("/tmp", "1");
        const auto plain = start("/bin/sleep", path, "2");
        Desktop desktop;
        const auto windowOf = [&](const auto& process) {
            return desktop.window(300, 300, process->processId());
        };
        desktop.list({windowOf(other), windowOf(plain)});
        X11FindWindowThread wanted(path.constData(), nullptr), present("/tmp/", nullptr);
        QStringList found;
        const QObject receiver;
        connect(&wanted, &X11FindWindowThread::windowFound, &receiver, [&found] { found << "wanted"; });
        connect(&present, &X11FindWindowThread::windowFound, &receiver, [&found] { found << "present"; });
        wanted.start();
        present.start();
        QTRY_COMPARE(found, QStringList{"present"});
        QVERIFY(wanted.isRunning());
        desktop.list({windowOf(wine)});
        QTRY_COMPARE(found, (QStringList{"present", "wanted"}));
    }

    /// No list of windows; then the server is killed; then there is none from the start.
    void noDesktop() {
        auto session = std::make_unique<XSession>();
        X11FindWindowThread finder("/tmp", nullptr);
        X11WaitWineProgramThread waiter(nullptr);
        EnvironmentGuard environment;
        for (const QByteArray& display : {session->display().toLatin1(), QByteArray(":77777")}) {
            environment.set("DISPLAY", display);
            finder.start();
            waiter.start();
            QVERIFY(!session || (!finder.wait(50) && waiter.isRunning()));
            session.reset();
            QVERIFY(finder.wait(10000) && waiter.wait(10000));
        }
    }
};

QTEST_GUILESS_MAIN(WindowWatchTest)
#include "WindowWatchTest.moc"
