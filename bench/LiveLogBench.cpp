// The log pane while a program prints as fast as a debugging run does: 30 MB/s of lines, most of them traces,
// from a child process. Longest time in which the window does not react, how long its thread was busy in one
// turn of its event loop, and CPU time: once for the pane and once, to compare, for plain reading of the same
// bytes; and the peak of memory. The arguments are MB/s and seconds. Limit: 50 ms busy in a turn. The exit
// status is 1 if the pane does not account for every line.
//
//     QT_QPA_PLATFORM=offscreen build/<preset>/bench/LiveLogBench [30] [3]
#include <sys/resource.h>

#include <ctime>

#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QThread>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <functional>

#include "fenk/window/Application.h"
#include "shell/configuration/hints/DebuggingLogsEdit.h"
#include "shell/configuration/page/DebuggingLogsFrame.h"
#include "shell/configuration/page/LiveLog.h"

namespace {

constexpr int BeatMs = 2;
constexpr int PieceMs = 10;

struct Result {
    double longest = 0;  ///< ms, also of other programs that run meanwhile
    double busiest = 0;  ///< ms, of the window's own thread
    double cpu = 0;      ///< ms of the whole process
    double bytes = 0;
};

double milliseconds(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

/// What is printed every few milliseconds.
struct Piece {
    QByteArray bytes;
    int shownLines = 0;  ///< those that are no traces
};

Piece makePiece(double megabytes) {
    Piece piece;
    for (int i = 0; piece.bytes.size() < megabytes * 1e6 * PieceMs / 1000; ++i) {
        const bool isShown = i % 4 == 0;
        piece.shownLines += isShown;
        piece.bytes += QByteArray("0024:0028:") + (isShown ? "fixme:dwmapi:" : "trace:module:") +
                       "LdrGetProcedureAddress called for program " + QByteArray::number(i) +
                       " of usual length\n";
    }
    return piece;
}

double peakMegabytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_maxrss) / 1024;
}

/// The child.
int print(double megabytes, int seconds) {
    const QByteArray piece = makePiece(megabytes).bytes;
    QElapsedTimer clock;
    clock.start();
    for (int turn = 1; turn * PieceMs <= seconds * 1000; ++turn) {
        std::fwrite(piece.constData(), 1, size_t(piece.size()), stderr);
        const qint64 early = turn * PieceMs - clock.elapsed();
        if (early > 0)
            QThread::msleep(ulong(early));
    }
    return 0;
}

Result measure(const QStringList& arguments, const std::function<void(const QByteArray&)>& take,
               const std::function<void(QEventLoop*)>& atEnd) {
    Result result;
    QProcess child;
    child.setReadChannel(QProcess::StandardError);
    QEventLoop loop;
    QObject::connect(&child, &QProcess::readyReadStandardError, &loop, [&] {
        const QByteArray bytes = child.readAllStandardError();
        result.bytes += bytes.size();
        take(bytes);
    });
    QObject::connect(&child, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), &loop,
                     [&] { atEnd(&loop); });
    QElapsedTimer turn;
    double busy = 0;
    QTimer beat;
    beat.setTimerType(Qt::PreciseTimer);
    QObject::connect(&beat, &QTimer::timeout, &loop, [&] {
        result.longest = std::max(result.longest, double(turn.nsecsElapsed()) / 1e6 - BeatMs);
        const double now = milliseconds(CLOCK_THREAD_CPUTIME_ID);
        result.busiest = std::max(result.busiest, now - busy);
        busy = now;
        turn.start();
    });
    child.start(QCoreApplication::applicationFilePath(), QStringList{"--print"} + arguments);
    child.waitForStarted();
    const double before = milliseconds(CLOCK_PROCESS_CPUTIME_ID);
    busy = milliseconds(CLOCK_THREAD_CPUTIME_ID);
    turn.start();
    beat.start(BeatMs);
    loop.exec();
    result.cpu = milliseconds(CLOCK_PROCESS_CPUTIME_ID) - before;
    return result;
}

void report(const char* name, const Result& result) {
    std::printf("%-14s %8.1f MB %10.1f ms longest turn, %.1f ms busy %10.1f ms CPU\n", name,
                result.bytes / 1e6, result.longest, result.busiest, result.cpu);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 4 && qstrcmp(argv[1], "--print") == 0)
        return print(std::atof(argv[2]), std::atoi(argv[3]));
    Fenk::Application application(argc, argv);
    const QStringList arguments{argc > 1 ? argv[1] : "30", argc > 2 ? argv[2] : "3"};
    const Result plain = measure(
        arguments, [](const QByteArray&) {}, [](QEventLoop* loop) { loop->quit(); });
    report("plain reading", plain);
    const double plainPeak = peakMegabytes();

    DebuggingLogsFrame frame;
    frame.resize(700, 400);
    frame.show();
    QCoreApplication::processEvents();
    LiveLog log(nullptr);
    QObject::connect(&log, &LiveLog::linesRead, &frame, &DebuggingLogsFrame::append);
    const Result live = measure(
        arguments, [&log](const QByteArray& bytes) { log.add(bytes); },
        [&log](QEventLoop* loop) {
            QObject::connect(&log, &LiveLog::ended, loop, &QEventLoop::quit);
            log.end();
        });
    report("log pane", live);
    const LogStore& store = frame.log()->store();
    std::printf("ratio: CPU x%.2f, busiest turn x%.2f; %d lines kept, %lld dropped\n", live.cpu / plain.cpu,
                live.busiest / std::max(plain.busiest, 1.0), store.lineCount(), store.droppedLines());
    const Piece piece = makePiece(std::atof(qPrintable(arguments[0])));
    const qint64 expected = qint64(live.bytes / piece.bytes.size()) * piece.shownLines;
    const qint64 counted = store.lineCount() + store.droppedLines();
    std::printf("lines: %lld of %lld; peak of memory: x%.2f (%.0f MB)\n", counted, expected,
                peakMegabytes() / plainPeak, peakMegabytes());
    return counted == expected ? 0 : 1;
}
