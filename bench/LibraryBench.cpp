// The library with 100, 2 000 and 20 000 programs of English and of Chinese names: from the service's reply
// to the first picture, what a keystroke in the search takes until its picture stands, and what a program
// takes of memory. Prints a table and how the cost grows with the number. Limits: 100 ms and 16 ms at 2 000,
// 20 KiB a program. The argument is the largest number of programs; with 100 it only shows that all of it
// works.
//
//     QT_QPA_PLATFORM=offscreen build/<preset>/bench/LibraryBench [20000]
#include <unistd.h>
#include <QElapsedTimer>
#include <QEvent>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "WindowTimes.h"
#include "fenk/controls/SearchEdit.h"
#include "fenk/window/Application.h"
#include "shell/IndexView.h"
#include "shell/Mainwindow.h"
#include "shell/library/AppLocalView.h"
#include "shell/library/LocalAppItemWidget.h"
#include "shell/library/ProgramGrid.h"
#include "support/FakeBottleService.h"
#include "support/PrivateBus.h"

namespace {

int runs = 5;

QString programs(int count, bool chinese) {
    QJsonArray list;
    for (int i = 0; i < count; ++i) {
        QString name = QString("Program of Workshop %1").arg(i);
        if (chinese) {
            name.clear();
            for (int k = 0; k < 6; ++k)
                name += QChar(0x4e00 + (i * 7 + k * 611) % 3500);
        }
        list.append(QJsonObject{{"bottle_name", QString("bottle%1").arg(i % 50)},
                                {"uuid", QString("00000000-0000-4000-8000-%1").arg(i, 12, 10, QChar('0'))},
                                {"name", name},
                                {"icon", QString("/nonexistent/icon%1.png").arg(i)},
                                {"stars", i % 6},
                                {"path", QString("C:\\Program Files\\Workshop %1\\program.exe").arg(i)},
                                {"size", "3M"},
                                {"created_time", "2025-01-01 10:00:00"}});
    }
    return QString::fromUtf8(QJsonDocument(list).toJson(QJsonDocument::Compact));
}

struct Result {
    double paint = 0;
    double keystroke = 0;
    double scroll = 0;
    double kibPerProgram = 0;
};

Result measure(int count, bool chinese) {
    Result result;
    TestSupport::FakeBottleService service;
    if (!service.start())
        qFatal("no stand-in service");
    service.setHeld("listAllPrograms", programs(count, chinese));
    Mainwindow window;
    window.show();
    service.waitForCall("listAllPrograms");
    settle(200);
    const double before = residentKiB();
    const FirstPaint first(&isA<LocalAppItemWidget>);
    QElapsedTimer timer;
    timer.start();
    service.release();
    first.wait();
    result.paint = milliseconds(timer);
    settle(1500);
    result.kibPerProgram = (residentKiB() - before) / count;

    AppLocalView* view = window.indexView()->localView();
    auto* edit = window.findChild<Fenk::SearchEdit*>();
    const QStringList keys = chinese ? QStringList{"", "y", "yi", "yih", "yi", "y", ""}
                                     : QStringList{"", "p", "pr", "prw", "prw9", "prw99", "prw", ""};
    // Of each keystroke the best of some runs, of all keystrokes the worst.
    for (int key = 1; key < keys.size(); ++key) {
        double best = 1e9;
        for (int run = 0; run < runs; ++run) {
            edit->setText(keys[key - 1]);
            settle(20);
            timer.restart();
            edit->setText(keys[key]);
            view->repaint();
            best = std::min(best, milliseconds(timer));
        }
        result.keystroke = std::max(result.keystroke, best);
    }
    QScrollBar* bar = view->shownGrid()->verticalScrollBar();
    result.scroll = 1e9;
    for (int step = 0; step < 40; ++step) {
        timer.restart();
        bar->setValue(step % 3 ? bar->value() + 160 : 0);
        view->repaint();
        result.scroll = std::min(result.scroll, milliseconds(timer));
        settle(5);
    }
    return result;
}

}  // namespace

int main(int argc, char** argv) {
    const TestSupport::PrivateBus bus;
    const QTemporaryDir home;
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME"})
        qputenv(name, QFile::encodeName(home.path()));
    Fenk::Application application(argc, argv);
    const int most = argc > 1 ? std::atoi(argv[1]) : 20000;
    QLoggingCategory::setFilterRules("*.info=false\n*.debug=false\n*.warning=false");
    QLocale::setDefault(QLocale(QLocale::Chinese));
    if (most > 100)
        measure(100, true);  // what is loaded once for all
    else
        runs = 1;
    std::printf("%-8s %8s %12s %14s %12s %14s\n", "names", "programs", "picture ms", "keystroke ms",
                "scroll ms", "KiB/program");
    for (const bool chinese : {false, true}) {
        Result last;
        int lastCount = 0;
        for (const int count : {100, 2000, 20000}) {
            if (count > most)
                break;
            const Result now = measure(count, chinese);
            std::printf("%-8s %8d %12.1f %14.1f %12.1f %14.2f", chinese ? "Chinese" : "English", count,
                        now.paint, now.keystroke, now.scroll, now.kibPerProgram);
            if (lastCount)
                std::printf("   x%d programs: picture x%.1f, keystroke x%.1f, scroll x%.1f",
                            count / lastCount, now.paint / last.paint, now.keystroke / last.keystroke,
                            now.scroll / last.scroll);
            std::printf("\n");
            std::fflush(stdout);
            last = now;
            lastCount = count;
        }
    }
    return 0;
}
