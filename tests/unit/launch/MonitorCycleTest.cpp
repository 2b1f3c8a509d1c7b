#include "launch/monitor/MonitorCycle.h"
#include "launch/monitor/MonitorProtocol.h"
#include "support/Table.h"

using Processes = MonitorCycle::Processes;
using Windows = MonitorCycle::Windows;

/// What the monitor concludes from one list of processes and windows after the other.
class MonitorCycleTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    /// One word per cycle: "a" is a process, "w" a window, "+" one more process, "!" a crash reporter, "?" a
    /// harmless one. Expected are start and quit with the number of the cycle, from 1.
    void cycles_data() {
        const TestSupport::Table<QString, QString, bool> row("cycles", "told", "crashed");
        row("window, closed, gone", "a aw aw a -", "start@2 quit@5", false);
        row("gone at once with its window", "aw -", "start@1 quit@2", false);
        row("gone without a window", "a -", "quit@2", false);
        row("lingers", "aw a a a a a a", "start@1 quit@7", false);
        row("lingers and changes", "aw a a a a a+ a+ a+ a+ a+ a+", "start@1 quit@11", false);
        row("opens another", "aw a a a a aw a a a a a a", "start@1 start@6 quit@12", false);
        row("stays open", "aw" + QString(" aw").repeated(40), "start@1", false);
        row("never a window", QString("a ").repeated(31), "quit@31", false);
        row("never a window, changes", QString("a ").repeated(30) + QString("a+ ").repeated(31), "quit@61",
            false);
        row("nothing ever", "- - - - - -", "quit@5", false);
        row("only windows", "-w - a", "start@1 quit@2", false);
        row("late", QString("a ").repeated(30) + "aw", "start@31", false);
        row("crash", "a! a!", "", true);
        row("crash told once and for all", "a! a", "", true);
        row("no crash", "a?", "", false);
    }
    void cycles() {
        QFETCH(QString, cycles);
        QFETCH(QString, told);
        const QMap<QChar, QString> names{
            {'a', "a.exe"}, {'+', "b.exe"}, {'!', "WineDbg.exe"}, {'?', "CrashPad_handler.exe"}};
        MonitorCycle cycle;
        QStringList events;
        int number = 0;
        for (const QString& look : cycles.split(' ', Qt::SkipEmptyParts)) {
            Processes processes;
            for (const QChar letter : look) {
                if (names.contains(letter))
                    processes[QString(letter)] = names[letter];
            }
            const Windows windows = look.contains('w') ? Windows{{"1", "t"}} : Windows();
            QString event;
            if (cycle.step(processes, windows, [&event] { event = "start"; }))
                event += "quit";
            ++number;
            if (!event.isEmpty())
                events += event + '@' + QString::number(number);
            if (event.contains("quit"))
                break;
        }
        QCOMPARE(events.join(' '), told);
        QTEST(cycle.crashed, "crashed");
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
