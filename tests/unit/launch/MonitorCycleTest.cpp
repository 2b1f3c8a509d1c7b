#include <QRandomGenerator>
#include <QtTest>

#include "launch/monitor/MonitorCycle.h"
#include "launch/monitor/MonitorProtocol.h"

namespace {

using Processes = MonitorCycle::Processes;
using Windows = MonitorCycle::Windows;

/// The rules once more, step by step as they were first written down.
struct Model {
    int lastWindows = 0;
    Processes last;
    unsigned unchanged = 0;
    bool seen = false, crashed = false;

    QString step(const Processes& p, const Windows& w) {
        QString told;
        if (!last.isEmpty() && p.isEmpty())
            return "quit";
        int next = 0;
        if (lastWindows != 0) {
            if (!seen) {
                unchanged = 0;
                next = 6;
            } else {
                next = w.isEmpty() ? 4 : 5;
            }
        } else if (!w.isEmpty()) {
            seen = true;
            told = "start";
            next = 5;
        } else {
            next = seen ? 4 : 44;
        }
        if (next == 4) {
            if (p.isEmpty())
                return "quit";
            next = lastWindows != 0 ? 5 : 44;
        }
        if (next == 44) {
            if (p == last) {
                if (++unchanged == (seen || p.isEmpty() ? 5u : 30u))
                    return "quit";
            } else {
                unchanged = 0;
            }
        }
        if (next == 5)
            unchanged = 0;
        for (const QString& name : p)
            crashed = crashed || ((name.contains("crash", Qt::CaseInsensitive) ||
                                   name.contains("bugreport", Qt::CaseInsensitive)) &&
                                  !name.contains("crashpad", Qt::CaseInsensitive));
        lastWindows = w.size();
        last = p;
        return told;
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
    /// Processes a=1.exe; a letter for a window. "+" is one more process, "!" a crash reporter.
    void cycles_data() {
        QTest::addColumn<QString>("cycles");
        QTest::addColumn<QString>("told");  // "start@n quit@n", counted from 1
        QTest::addColumn<bool>("crashed");
        QTest::newRow("window, closed, gone") << "a aw aw a -"
                                              << "start@2 quit@5" << false;
        QTest::newRow("lingers") << "aw a a a a a a"
                                 << "start@1 quit@7" << false;
        QTest::newRow("lingers and changes") << "aw a a a a a+ a+ a+ a+ a+ a+"
                                             << "start@1 quit@11" << false;
        QTest::newRow("opens another") << "aw a a aw a"
                                       << "start@1 start@4" << false;
        QTest::newRow("never a window") << QString("a ").repeated(31).trimmed() << "quit@31" << false;
        QTest::newRow("nothing ever") << "- - - - - -"
                                      << "quit@5" << false;
        QTest::newRow("late") << QString("a ").repeated(30) + "aw"
                              << "start@31" << false;
        QTest::newRow("crash") << "a! a!"
                               << "" << true;
        QTest::newRow("no crash") << "a?"
                                  << "" << false;
    }
    void cycles() {
        QFETCH(QString, cycles);
        QFETCH(QString, told);
        MonitorCycle cycle;
        QStringList events;
        int number = 0;
        for (const QString& look : cycles.split(' ', Qt::SkipEmptyParts)) {
            Processes processes;
            if (look.contains('a'))
                processes["1"] = "a.exe";
            if (look.contains('+'))
                processes["2"] = "b.exe";
            if (look.contains('!'))
                processes["3"] = "WineDbg.exe";
            if (look.contains('?'))
                processes["3"] = "CrashPad_handler.exe";
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
