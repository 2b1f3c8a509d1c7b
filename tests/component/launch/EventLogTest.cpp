#include <sys/stat.h>

#include <QJsonObject>
#include <QtTest>
#include <thread>

#include "eventlog/EventFile.h"
#include "launch/records/EventWriter.h"
#include "support/LogCapture.h"
#include "support/TestHome.h"

using namespace TestSupport;

/// The writer with the installed library, up to the file.
class EventLogTest : public QObject {
    Q_OBJECT

    TestHome m_home;
    const QString m_dir = m_home.path() + "/.local/state/lumora-event-log";
    const QString m_file = m_dir + "/cellarix.jsonl";
    const EventWriter m_writer{{"/nonexistent/liblumora-event-log.so", EVENT_LOG_LIBRARY}};

    static QJsonObject record(int number, int bytes = 0) {
        return {{"number", number}, {"text", QString(bytes, 'x') + "\n"}};
    }
    QList<QByteArray> lines(const QString& suffix = {}) const {
        QList<QByteArray> all = readFile(m_file + suffix).split('\n');
        return all.takeLast().isEmpty() ? all : QList<QByteArray>{"an open line"};
    }

private Q_SLOTS:
    void cleanup() { QDir(m_dir).removeRecursively(); }

    void eachRecordIsALine() {
        QVERIFY(QDir().mkpath(m_dir));
        m_home.write(".local/state/lumora-event-log/cellarix.jsonl", "{\"torn");
        QVERIFY(QFile::setPermissions(m_file, QFile::Permissions(0x6666)));
        std::vector<std::thread> threads(20);
        for (std::thread& thread : threads)
            thread = std::thread([this] { m_writer.writeEvent(record(7)); });
        for (std::thread& thread : threads)
            thread.join();
        QTRY_COMPARE(lines().size(), 21);
        for (const QByteArray& line : lines().mid(1))
            QCOMPARE(line, QByteArray(R"({"number":7,"text":"\n"})"));
        QCOMPARE(QFile::permissions(m_file), QFile::Permissions(0x6600));
    }

    void fullFilesRoll() {
        const LogCapture log;
        EventWriter({"/nonexistent.so"}).writeEvent(record(1, 100 * 1024));  // says nothing
        for (int number = 0; number < 20; ++number) {
            m_writer.writeEvent(record(number, 300 * 1024));
            QTRY_VERIFY(readFile(m_file).contains(QString("\"number\":%1,").arg(number).toUtf8()));
        }
        m_writer.writeEvent(record(-1, 2000 * 1024));  // is dropped
        m_writer.writeEvent(record(20));
        QTRY_VERIFY(readFile(m_file).contains("\"number\":20,"));
        const QStringList files{"cellarix.jsonl", "cellarix.jsonl.1", "cellarix.jsonl.2", "cellarix.jsonl.3"};
        QCOMPARE(QDir(m_dir).entryList(QDir::Files, QDir::Name), files);
        QCOMPARE(lines(".3").size(), 3);
        QCOMPARE(log.count("logs is to big"), 21);
    }

    /// Switched off; then a pipe, which would block the writer, and a link to another file.
    void nothingIsWritten() {
        const EventFile file("cellarix");
        const QString off = m_home.write(".config/lumora-event-log/off", "");
        file.append("1\n");
        QVERIFY(!QFile::exists(m_dir) && QFile::remove(off) && QDir().mkpath(m_dir));
        QCOMPARE(mkfifo(QFile::encodeName(m_file).constData(), 0600), 0);
        file.append("2\n");
        QVERIFY(QFile::remove(m_file) && QFile::link(m_home.write("mine", ""), m_file));
        file.append("3\n");
        QVERIFY(QFile::remove(m_file) && readFile(m_home.path() + "/mine").isEmpty());
        file.append("4\n");
        QCOMPARE(readFile(m_file), QByteArray("4\n"));
    }
};

QTEST_GUILESS_MAIN(EventLogTest)
#include "EventLogTest.moc"
