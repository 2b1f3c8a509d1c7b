// A log of 200 000 lines that arrives while its window is open, in the log view and, to compare, in a plain
// text edit: time for all, the longest time in which the window does not react, memory on the heap; then a
// resize, a jump to the top and the text that is saved. Prints a table and the ratios. Limits for the log
// view: 32 MiB and 100 ms. The argument is the number of lines; the exit status is 1 above 32 MiB.
//
//     QT_QPA_PLATFORM=offscreen build/<preset>/bench/LogViewBench [200000]
#include <malloc.h>
#include <QElapsedTimer>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <cstdio>
#include <cstdlib>
#include <functional>

#include "WindowTimes.h"
#include "fenk/window/Application.h"
#include "widgets/LogsWidget.h"

namespace {

constexpr int LinesAtOnce = 500;  ///< arrive between two turns of the event loop
constexpr double MiB = 1024 * 1024;

struct Result {
    double all = 0;      ///< ms
    double longest = 0;  ///< ms
    double memory = 0;   ///< MiB
    double resize = 0;   ///< ms
    double jump = 0;     ///< ms
};

double heap() {
    const struct mallinfo2 info = mallinfo2();
    return double(info.uordblks + info.hblkhd) / MiB;
}

double timeOf(const std::function<void()>& work) {
    QElapsedTimer timer;
    timer.start();
    work();
    QCoreApplication::processEvents();
    return milliseconds(timer);
}

QString line(int number) {
    return QString(
               "%1:0024:trace:module:LdrGetProcedureAddress called for program %2, a line of usual length")
        .arg(number, 8, 16, QChar('0'))
        .arg(number % 97);
}

Result measure(int count, QAbstractScrollArea& view, const std::function<void(const QString&)>& append) {
    view.resize(800, 500);
    view.show();
    QCoreApplication::processEvents();
    Result result;
    const double before = heap();
    for (int number = 0; number < count;) {
        const double turn = timeOf([&] {
            for (int i = 0; i < LinesAtOnce && number < count; ++i, ++number)
                append(line(number));
        });
        result.all += turn;
        result.longest = std::max(result.longest, turn);
    }
    result.memory = heap() - before;
    result.resize = timeOf([&] { view.resize(400, 700); });
    result.jump = timeOf([&] { view.verticalScrollBar()->setValue(0); });
    return result;
}

void print(const char* name, const Result& result) {
    std::printf("%-16s %10.1f %12.1f %12.1f %10.1f %10.1f\n", name, result.all, result.longest, result.memory,
                result.resize, result.jump);
}

}  // namespace

int main(int argc, char** argv) {
    Fenk::Application application(argc, argv);
    const int count = argc > 1 ? std::atoi(argv[1]) : 200000;
    std::printf("%-16s %10s %12s %12s %10s %10s\n", "view", "all ms", "longest ms", "memory MiB", "resize ms",
                "jump ms");
    QPlainTextEdit edit;
    const Result plain = measure(count, edit, [&](const QString& text) { edit.appendPlainText(text); });
    print("plain text edit", plain);
    LogsWidget log;
    const Result result = measure(count, log, [&](const QString& text) { log.appendLine(text, 3); });
    print("log view", result);
    std::printf("ratio: all x%.2f, memory x%.2f; the store counts %.1f MiB, %d lines, %lld dropped\n",
                result.all / plain.all, result.memory / plain.memory, double(log.store().bytes()) / MiB,
                log.store().lineCount(), log.store().droppedLines());
    std::printf("text to save: %.1f ms\n", timeOf([&] { log.allLines(); }));
    return result.memory > 32 ? 1 : 0;
}
