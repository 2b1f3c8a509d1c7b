// What watching for windows costs: 300 windows of as many processes on the desktop, and one property of the
// root window that changes each second, for ten seconds. CPU time is that of this process (and, for the
// comparison, of its children), without the X server's. With a Windows program as argument, also the time
// from the program's window in the window manager's list to the report. Run it in a session of its own:
//
//     scripts/session --private build/<preset>/bench/WindowWatchBench [--windows 300] [--seconds 10]
//     [build/<preset>/tests/programs/x64/window.exe]
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>
#include <vector>

#include "BestOf.h"
#include "core/base/WineNames.h"
#include "launch/watch/WineWindows.h"
#include "launch/watch/X11WaitWineProgramThread.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>

namespace {

constexpr int Reports = 10;

double cpuMs(int who) {
    rusage used;
    getrusage(who, &used);
    const auto ms = [](const timeval& time) {
        return double(time.tv_sec) * 1e3 + double(time.tv_usec) / 1e3;
    };
    return ms(used.ru_utime) + ms(used.ru_stime);
}

/// Sleeps, with all the libraries of this program mapped, until its parent ends.
pid_t spawn() {
    const pid_t child = fork();
    if (child == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        for (;;)
            pause();
    }
    return child;
}

void setNumbers(Display* display, Window window, const char* name,
                const std::vector<unsigned long>& numbers) {
    XChangeProperty(display, window, XInternAtom(display, name, False), XA_CARDINAL, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(numbers.data()), int(numbers.size()));
}

void turn(int ms) {
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

/// CPU time of that many seconds, in ms.
double watch(Display* display, unsigned long seconds, bool withChanges) {
    X11WaitWineProgramThread thread(nullptr);
    thread.start();
    turn(500);
    const double before = cpuMs(RUSAGE_SELF);
    for (unsigned long second = 0; second < seconds; ++second) {
        if (withChanges) {
            setNumbers(display, DefaultRootWindow(display), "_CELLARIX_BENCH", {second});
            XFlush(display);
        }
        turn(1000);
    }
    return cpuMs(RUSAGE_SELF) - before;
}

void askForEach(const std::vector<pid_t>& processes) {
    const double ours = bestOf([&] {
        for (const pid_t pid : processes)
            WineWindows::isWineProcess(pid);
    });
    const double before = cpuMs(RUSAGE_CHILDREN) + cpuMs(RUSAGE_SELF);
    const double other = bestOf([&] {
        for (const pid_t pid : processes) {
            char line[512];
            FILE* grep = popen(qPrintable(QString("grep wine.*-preloader /proc/%1/maps").arg(pid)), "r");
            std::fgets(line, sizeof line, grep);
            pclose(grep);
        }
    });
    const double cpu = (cpuMs(RUSAGE_CHILDREN) + cpuMs(RUSAGE_SELF) - before) / 5;
    std::printf("| the maps of %d processes, read here | %.1f ms |\n", int(processes.size()), ours);
    std::printf("| the same by %d children (grep) | %.1f ms, %.1f ms CPU |\n", int(processes.size()), other,
                cpu);
}

/// From the window manager's list to the report, for a program that is started anew each time.
void measureReports(const QString& program) {
    const QTemporaryDir prefix;
    std::vector<double> times;
    QProcess wine;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("WINEPREFIX", prefix.path());
    environment.insert("WINEDEBUG", "-all");
    environment.insert("WINEDLLOVERRIDES", "mscoree,mshtml=;winemenubuilder.exe=");
    environment.insert("_CXB_WINE_PROGRAM_UUID", "bench");
    wine.setProcessEnvironment(environment);
    X11Desktop::prepareThreads();
    X11Desktop desktop;
    for (int run = 0; run < Reports; ++run) {
        X11WaitWineProgramThread thread(nullptr);
        QElapsedTimer sinceWindow;
        QEventLoop loop;
        QTimer looks;
        const int before = desktop.windows().size();
        QObject::connect(&looks, &QTimer::timeout, &loop, [&] {
            if (!sinceWindow.isValid() && desktop.windows().size() > before)
                sinceWindow.start();
        });
        QObject::connect(&thread, &X11WaitWineProgramThread::winpopuped, &loop, [&] {
            times.push_back(sinceWindow.isValid() ? double(sinceWindow.nsecsElapsed()) / 1e6 : 0.0);
            loop.quit();
        });
        looks.start(1);
        thread.start();
        wine.start("wine", {program});
        QTimer::singleShot(120000, &loop, &QEventLoop::quit);
        loop.exec();
        QProcess stop;
        stop.setProcessEnvironment(environment);
        stop.start("wineserver", {"-k"});
        stop.waitForFinished();
        wine.waitForFinished();
    }
    std::sort(times.begin(), times.end());
    if (!times.empty())
        std::printf("| a program's window to the report, of %zu | median %.1f ms, longest %.1f ms |\n",
                    times.size(), times[times.size() / 2], times.back());
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QCommandLineParser options;
    options.addOptions({{"windows", {}, "number", "300"}, {"seconds", {}, "number", "10"}});
    options.process(application);
    const int seconds = options.value("seconds").toInt();
    std::vector<pid_t> processes;
    for (int i = 0; i < options.value("windows").toInt(); ++i)
        processes.push_back(spawn());
    Display* display = XOpenDisplay(nullptr);
    if (!display) {
        std::fprintf(stderr, "no display\n");
        return 1;
    }
    for (const pid_t pid : processes) {
        const Window window =
            XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 300, 200, 0, 0, 0);
        setNumbers(display, window, "_NET_WM_PID", {static_cast<unsigned long>(pid)});
        XMapWindow(display, window);
    }
    XSync(display, False);
    turn(seconds * 500);
    {
        X11Desktop desktop;
        std::printf("| windows on the desktop | %d |\n", int(desktop.windows().size()));
        WineWindows known(desktop);
        const auto look = [&](WineWindows& wine) {
            for (const X11Desktop::Window window : desktop.windows())
                wine.wineEnvironmentOfWindow(window);
        };
        const double first = bestOf([&] {
            WineWindows wine(desktop);
            look(wine);
        });
        look(known);
        std::printf("| the first look at all of them | %.1f ms |\n", first);
        std::printf("| each further look | %.1f ms |\n", bestOf([&] { look(known); }));
    }
    askForEach(processes);
    const double idle = watch(display, seconds, false);
    const double busy = watch(display, seconds, true);
    std::printf("| CPU while nothing changes | %.1f ms a second, %.2f %% of a core |\n", idle / seconds,
                idle / seconds / 10);
    std::printf("| CPU with one change a second | %.1f ms a second, %.2f %% of a core |\n", busy / seconds,
                busy / seconds / 10);
    for (const pid_t pid : processes)
        kill(pid, SIGKILL);
    XCloseDisplay(display);
    for (const QString& program : options.positionalArguments())
        measureReports(program);
    return 0;
}
