#include <QJsonArray>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QSqlDatabase>
#include <QTimer>
#include <QtTest>
#include <memory>

#include "backend/PendingWork.h"
#include "launch/records/AppBootingStateManager.h"
#include "launch/records/EventRecord.h"
#include "launch/records/ExecutorRecord.h"
#include "launch/records/RunEvent.h"
#include "launch/run/BottleTasks.h"
#include "support/FakeBottleService.h"
#include "support/LogCapture.h"
#include "support/PrivateBus.h"
#include "support/TestHome.h"

using namespace TestSupport;

namespace {

const char Program[] = "11111111-2222-3333-4444-555555555555";
const char Bottle[] = "program-0a1b2c3d";
const QDateTime Now(QDate(2025, 3, 9), QTime(7, 5, 4));

/// The whole record, without the fields that a repair adds.
const char Record[] =
    R"({"action":"run_exe","appinfoid":"program-0a1b2c3d","boottime":1.234,"emulator":"","exename":"Tool.EXE",)"
    R"("fileinfo_64":"eyJhIjoxfQ==","machine":{"arch":"amd64"},"memory_optimization":true,"raiting":4,)"
    R"("repaired":false,"runner":"ge","runner_version":"9.1","successed":%1,"tid":1001400001,)"
    R"("time":"2025-03-09 07:05:04","version":"3.3.4.008","winelogs":"bGluZSAxCuS9oOWlvQ=="})";

}  // namespace

/// How the start of a stored program is recorded, with a fake service and without a display.
class BootRecordTest : public QObject {
    Q_OBJECT

    TestHome m_home;
    PrivateBus m_bus;
    FakeBottleService m_service;
    const QString m_path = m_home.path() + "/bottle";
    const QString m_log = QString("bottle/logs/wine-program-%1.txt").arg(Program);
    const QString m_events = m_home.path() + "/.local/state/lumora-event-log/cellarix.jsonl";
    AppBootingStateManager* m_manager = nullptr;

    static QByteArray build(bool successed) {
        return QJsonDocument(RunEvent::build(Bottle, Program, successed, 1.234F, Now, {{"arch", "amd64"}}))
            .toJson(QJsonDocument::Compact);
    }

private Q_SLOTS:
    void initTestCase() {
        qunsetenv("DISPLAY");
        QVERIFY(m_service.start());
        m_service.setText("getRunnerVersion:ge", "9.1");
        m_service.setBottle(
            Bottle, {{"Path", m_path},
                     {"Runner", "ge"},
                     {"Installed_Dependencies", QJsonArray{"gecko"}},
                     {"External_Programs",
                      QJsonObject{{Program, QJsonObject{{"path", "C:\\dir\\tool.exe"}, {"stars", 4}}}}}});
        m_home.write("bottle/drive_c/Dir/Tool.EXE", "no program");
        QVERIFY(QDir().mkpath(m_path + "/dosdevices"));
        QVERIFY(QFile::link("../drive_c", m_path + "/dosdevices/c:"));
        m_manager = AppBootingStateManager::instance();
    }

    void recordByteForByte() {
        const QString cache =
            QString(R"({"%1":{"exename":"Tool.EXE","fileinfo_64":"eyJhIjoxfQ==",)").arg(Program);
        const QByteArray rest = R"("successed":true},"x":{}})";
        m_home.write("bottle/fileinfo.cache", cache.toUtf8() + rest);
        m_home.write(m_log, "line 1\n0024:trace:seh: x\n" + QByteArray(1025, 'l') + "\r\n" + "你好\r\n");
        const QString failed = QString(Record).arg("false"), succeeded = QString(Record).arg("true");
        QString repaired = succeeded;
        repaired.replace(R"("repaired":false)", R"("repaired":true)")
            .replace(R"("machine")", R"("fixed_deps":["gecko"],"machine")");
        for (const QString& wanted : {failed, repaired, succeeded, failed, failed, repaired})
            QCOMPARE(build(wanted != failed), wanted.toUtf8());
        QCOMPARE(readFile(m_path + "/fileinfo.cache"), cache.toUtf8() + rest);
    }

    /// Without a cache the file is inspected, once. A first success does not count as a repair.
    void firstStart() {
        QVERIFY(QFile::remove(m_path + "/fileinfo.cache"));
        const QJsonObject record = QJsonDocument::fromJson(build(true)).object();
        QCOMPARE(record["exename"].toString(), QString("Tool.EXE"));
        QVERIFY(
            QByteArray::fromBase64(record["fileinfo_64"].toString().toLatin1()).startsWith("{\"peinfo\":"));
        QVERIFY(!record["repaired"].toBool() && !record.contains("fixed_deps"));
    }

    void logTail() {
        QStringList last;
        QByteArray many;
        for (int i = 0; i < 1000; ++i) {
            many += QByteArray::number(i) + "\n1:trace:x\n";
            if (i >= 960)
                last << QString::number(i);
        }
        const QString longest(1024, u'你');
        const QVector<QPair<QByteArray, QStringList>> rows{
            {"", {""}},
            {"a:trace:b\nc:trace:d", {}},
            {"\n\na\n", {"", "", "a"}},
            {many, last},  // of which there are forty
            {"early\n" + QByteArray(0xa00000 - 5, 'x') + "\nlate", {"late"}},
            {longest.toUtf8(), {longest}}};
        for (const auto& row : rows)
            QCOMPARE(EventRecord::logTail(m_home.write("log", row.first)), row.second);
    }

    /// Two programs of one bottle and one of another: a window, killWineServer, the limit, finishRecording.
    void watches() {
        const LogCapture log;
        QSignalSpy results(m_manager, &AppBootingStateManager::launchResult);
        for (const char* program : {"one", "two", "one"})
            m_manager->startRecording(Bottle, program);
        m_manager->startRecording("other", "three");
        const QList<QTimer*> timers = m_manager->findChildren<QTimer*>();
        QCOMPARE(timers.size(), 3);
        QCOMPARE(timers[0]->interval(), 30000);
        m_manager->slotsUploadEventLog("one", true);
        m_manager->slotsUploadEventLog("one", true);
        QCOMPARE(log.count("program one not in recording list"), 1);
        QVERIFY(results[0][0] == "one" && results[0][1] == true && results[0][2].toFloat() < 30);
        BottleTasks::killWineServer(Bottle);
        QVERIFY(!m_service.waitForCall("killWineServer").method.isEmpty());
        QVERIFY(m_manager->finishRecording("two", true) < 0);
        timers[2]->start(0);
        QTRY_COMPARE(results.size(), 2);
        QCOMPARE(results[1], (QList<QVariant>{"three", false, 30.0F}));
        m_manager->startRecording("other", "four");
        QVERIFY(m_manager->finishRecording("four", true) >= 0 && results.size() == 3);
        m_manager->writeRunEvent(Bottle, Program, true, 2.5, {{"canceled", "yes"}});
        QVERIFY(PendingWork::instance()->isPending());
        QTRY_COMPARE_WITH_TIMEOUT(readFile(m_events).count('\n'), 4, 60000);
        const QList<QByteArray> events = readFile(m_events).split('\n');
        QVERIFY(events[1].contains(R"("boottime":30,)") && events[2].contains(R"("successed":false)"));
        QVERIFY(events[3].contains(R"("boottime":2.5,"canceled":"yes")"));
        QTRY_VERIFY(!PendingWork::instance()->isPending());
    }

    /// Two objects share a connection, which the last one closes; the file stays.
    void bottleOfAFile() {
        const LogCapture log;
        const QString file = m_home.write("a.exe", "a"), same = m_home.write("b.exe", "a");
        {
            const ExecutorRecord first(nullptr);
            auto second = std::make_unique<ExecutorRecord>(nullptr);
            QVERIFY(second->addRecord(file, "it's"));
            second.reset();
        }
        QVERIFY(QSqlDatabase::connectionNames().isEmpty());
        ExecutorRecord record(nullptr);
        QVERIFY(!record.addRecord(same, "other") && log.contains("add record error:"));
        QVERIFY(!record.addRecord("/nonexistent", "other"));
        record.removeRecords("other");
        QCOMPARE(record.bottleForFile(same), QString("it's"));
        record.removeRecords("it's");
        QCOMPARE(record.bottleForFile(file), QString());
        QVERIFY(!log.contains("QSqlDatabasePrivate"));
    }
};

QTEST_GUILESS_MAIN(BootRecordTest)
#include "BootRecordTest.moc"
