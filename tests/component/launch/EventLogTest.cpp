#include <sys/stat.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QtConcurrent>
#include <QtTest>
#include <numeric>

#include "eventlog/EventFile.h"
#include "launch/records/EventWriter.h"
#include "support/LogCapture.h"
#include "support/TestHome.h"

using namespace TestSupport;

/// The writer with the library that this project brings along, up to the file.
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
    void initTestCase() { qunsetenv("XDG_STATE_HOME"); }
    void cleanup() { QDir(m_dir).removeRecursively(); }

    void eachRecordIsALine() {
        QVERIFY(QDir().mkpath(m_dir));
        m_home.write(".local/state/lumora-event-log/cellarix.jsonl", "{\"torn");
        QVERIFY(QFile::setPermissions(m_file, QFile::Permissions(0x6666)));
        QVector<int> numbers(200);
        std::iota(numbers.begin(), numbers.end(), 0);
        QtConcurrent::blockingMap(numbers, [this](int number) { m_writer.writeEvent(record(number)); });
        QTRY_COMPARE(lines().size(), numbers.size() + 1);
        QSet<int> found;
        for (const QByteArray& line : lines().mid(1))
            found.insert(QJsonDocument::fromJson(line).object().value("number").toInt(-1));
        QCOMPARE(found.size(), numbers.size());
        struct stat facts;
        QCOMPARE(stat(QFile::encodeName(m_file).constData(), &facts), 0);
        QCOMPARE(facts.st_mode & 0777U, 0600U);
    }

    void fullFilesRoll() {
        const LogCapture log;
        EventWriter({"/nonexistent/liblumora-event-log.so"})
            .writeEvent(record(1, 100 * 1024));  // says nothing
        const int bytes = 300 * 1024;
        for (int number = 0; number < 20; ++number) {
            m_writer.writeEvent(record(number, bytes));
            QTRY_VERIFY(readFile(m_file).contains(QString("\"number\":%1,").arg(number).toUtf8()));
        }
        m_writer.writeEvent(record(-1, 2000 * 1024));  // is dropped
        m_writer.writeEvent(record(20));
        QTRY_VERIFY(lines().last().contains("\"number\":20,"));
        const QStringList files{"cellarix.jsonl", "cellarix.jsonl.1", "cellarix.jsonl.2", "cellarix.jsonl.3"};
        QCOMPARE(QDir(m_dir).entryList(QDir::Files, QDir::Name), files);
        QCOMPARE(lines(".3").size(), 3);
        QCOMPARE(log.count("logs is to big"), 21);
    }

    void turnedOff() {
        const EventFile file("cellarix");
        const QString off = m_home.write(".config/lumora-event-log/off", "");
        file.append("1\n");
        QVERIFY(!QFile::exists(m_dir));
        QVERIFY(QFile::remove(off));
        file.append("2\n");
        QCOMPARE(lines(), QList<QByteArray>{"2"});
    }

    /// A pipe would hold the writer up, and a link would lead elsewhere.
    void notAFile() {
        const QByteArray name = QFile::encodeName(m_file);
        QVERIFY(QDir().mkpath(m_dir));
        QCOMPARE(mkfifo(name.constData(), 0600), 0);
        EventFile("cellarix").append("1\n");
        QVERIFY(QFile::remove(m_file) && QFile::link(m_home.write("mine", ""), m_file));
        EventFile("cellarix").append("1\n");
        QCOMPARE(readFile(m_home.path() + "/mine"), QByteArray());
    }
};

QTEST_GUILESS_MAIN(EventLogTest)
#include "EventLogTest.moc"
