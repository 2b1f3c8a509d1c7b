#include <QRandomGenerator>

#include "launch/monitor/MonitorCycle.h"
#include "launch/monitor/MonitorProtocol.h"
#include "support/Table.h"

namespace {

using Processes = MonitorCycle::Processes;
using Windows = MonitorCycle::Windows;

/// The rules once more, in as few words as they can be told.
struct Model {
    int lastWindows = 0;
    Processes last;
    unsigned unchanged = 0;
    bool seen = false, crashed = false;

    QString step(const Processes& p, const Windows& w) {
        const bool started = !w.isEmpty() && lastWindows == 0 && !(p.isEmpty() && !last.isEmpty());
        if (p.isEmpty() && (!last.isEmpty() || (w.isEmpty() && seen)))
            return "quit";
        seen = seen || started;
        if (!w.isEmpty() || lastWindows != 0 || p != last)
            unchanged = 0;
        else if (++unchanged == (seen || p.isEmpty() ? 5u : 30u))
            return "quit";
        for (const QString& name : p)
            crashed = crashed || name == "BugReport.exe";
        lastWindows = w.size();
        last = p;
        return started ? "start" : "";
    }
};

QString run(MonitorCycle* cycle, const Processes& processes, const Windows& windows) {
    QString told;
    if (cycle->step(processes, windows, [&] { told = "start"; }))
        told += "quit";
    return told;
}

}  // namespace

/// What one look at a bottle after the other means.
class MonitorCycleTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    /// "a" is a process, "w" a window, "+" one more process, "!" a crash reporter, "?" a harmless one.
    /// What is told stands as start@n and quit@n, counted from 1.
    void cycles_data() {
        const TestSupport::Table<QString, QString, bool> row("cycles", "told", "crashed");
        row("window, closed, gone", "a aw aw a -", "start@2 quit@5", false);
        row("lingers", "aw a a a a a a", "start@1 quit@7", false);
        row("lingers and changes", "aw a a a a a+ a+ a+ a+ a+ a+", "start@1 quit@11", false);
        row("opens another", "aw a a aw a", "start@1 start@4", false);
        row("never a window", QString("a ").repeated(31), "quit@31", false);
        row("nothing ever", "- - - - - -", "quit@5", false);
        row("late", QString("a ").repeated(30) + "aw", "start@31", false);
        row("crash", "a! a!", "", true);
        row("no crash", "a?", "", false);
    }
    void cycles() {
        QFETCH(QString, cycles);
        QFETCH(QString, told);
        MonitorCycle cycle;
        QStringList events;
        int number = 0;
        for (const QString& look : cycles.split(' ', Qt::SkipEmptyParts)) {
            Processes processes;
            for (const auto& [letter, name] : {std::pair('a', "a.exe"),
                                               {'+', "b.exe"},
                                               {'!', "WineDbg.exe"},
                                               {'?', "CrashPad_handler.exe"}}) {
                if (look.contains(letter))
                    processes[QString(letter)] = name;
            }
            const QString event =
                run(&cycle, processes, look.contains('w') ? Windows{{"1", "t"}} : Windows());
            ++number;
            if (!event.isEmpty())
                events += event + '@' + QString::number(number);
            if (event.contains("quit"))
                break;
        }
        QCOMPARE(events.join(' '), told);
        QTEST(cycle.crashed, "crashed");
    }

    void likeTheModel() {
        QRandomGenerator random(3);
        for (int sequence = 0; sequence < 500; ++sequence) {
            MonitorCycle cycle;
            Model model;
            const int steadiness = random.bounded(2, 40);
            Processes processes;
            Windows windows;
            for (int look = 0; look < 80; ++look) {
                if (random.bounded(steadiness) == 0)
                    windows = random.bounded(2) ? Windows{{"1", "t"}} : Windows();
                if (random.bounded(steadiness) == 0) {
                    const QString names[] = {"a.exe", "BugReport.exe", "CrashPad.exe"};
                    processes.clear();
                    for (int i = random.bounded(3); i > 0; --i)
                        processes[QString::number(random.bounded(4))] =
                            names[random.bounded(30) ? 0 : 1 + random.bounded(2)];
                }
                const QString expected = model.step(processes, windows);
                QCOMPARE(run(&cycle, processes, windows), expected);
                QCOMPARE(cycle.crashed, model.crashed);
                QCOMPARE(cycle.windowSeen, model.seen);
                if (expected == "quit")
                    break;
            }
        }
    }

    void protocol() {
        MonitorProtocol protocol;
        for (const char* line :
             {"junk", "::process list", "1 - 0 - a - b.exe", "2 - 0 - explorer.exe", " - 0 - x", "3 - 0 - ",
              "4", "::window list", "1 - Default IME", "1 - A - B", "2 - Desktop", "1", "9 - x"})
            QVERIFY(!protocol.read(line));
        QVERIFY(protocol.read("::end"));
        QCOMPARE(protocol.processList, (Processes{{"1", "a - b.exe"}}));
        QCOMPARE(protocol.windowList, (Windows{{"1", "A - B"}, {"1", ""}}));
        protocol.read("::process list");
        QVERIFY(protocol.processList.isEmpty());
        protocol.read("::window list");
        QVERIFY(protocol.windowList.isEmpty());
    }
};

QTEST_GUILESS_MAIN(MonitorCycleTest)
#include "MonitorCycleTest.moc"
