#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QTemporaryDir>
#include <QtTest>
#include <memory>
#include <thread>
#include <vector>

#include "fenk/Log.h"

using namespace Fenk;

namespace {

QByteArray readAll(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QDateTime at(const QString& text) {
    return QDateTime::fromString(text, Qt::ISODate);
}

void say(AbstractAppender& appender, const QString& time, const QString& message) {
    appender.append(at(time), QtInfoMsg, nullptr, 0, nullptr, "default", message);
}

/// Standard error in a file as long as this lives.
class StderrCapture {
public:
    explicit StderrCapture(const QString& path) : m_path(path), m_saved(::dup(2)) {
        const int fd = ::open(qPrintable(path), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND, 0600);
        ::dup2(fd, 2);
        ::close(fd);
    }
    ~StderrCapture() {
        ::dup2(m_saved, 2);
        ::close(m_saved);
    }
    int lines() const { return readAll(m_path).count('\n'); }

private:
    QString m_path;
    int m_saved;
};

}  // namespace

class TestLog : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { m_directory = std::make_unique<QTemporaryDir>(); }
    void format_data();
    void format();
    void shortFunction_data();
    void shortFunction();
    void rollsDaily();
    void rollsWhatAnEarlierRunLeft();
    void limit_data();
    void limit();
    void fileComesBack();
    void unopenableFileIsToldOnceAndTriedAgain();
    void fullDisk();
    void tornLineIsEnded();
    void threadsDoNotMixLines();
    void appenderThatLogs();
    void consoleThatHasGone();
    void fatalIsWrittenAndAborts();

private:
    std::unique_ptr<QTemporaryDir> m_directory;
};

void TestLog::format_data() {
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("line");
    QTest::newRow("program's") << "%{time}{yyyy-MM-dd, HH:mm:ss.zzz} [%{type:-7}] %{function}() %{message}\n"
                               << "2024-02-29, 23:59:58.007 [Info   ] A::b() m %1 %{type}\n";
    QTest::newRow("all") << "%{file}:%{line} %{Function} %{category} %{type:6}|%{time}"
                         << "f.cpp:12 void A::b(int) net   Info|2024-02-29T23:59:58.007";
    QTest::newRow("percent and unknown") << "100%% %{what} %{type:x} %{type % "
                                         << "100% %{what} %{type:x} %{type % ";
    QTest::newRow("escaped placeholder") << "%%{type}"
                                         << "%{type}";
    QTest::newRow("time without end") << "%{time}{HH"
                                      << "2024-02-29T23:59:58.007{HH";
    QTest::newRow("empty") << ""
                           << "";
}

void TestLog::format() {
    QFETCH(QString, format);
    const QByteArray line =
        LogFormat(format).format(QDateTime(QDate(2024, 2, 29), QTime(23, 59, 58, 7)), QtInfoMsg, "/a/f.cpp",
                                 12, "void A::b(int)", "net", "m %1 %{type}");
    QTEST(QString::fromUtf8(line), "line");
    LogFormat(format).format(QDateTime(), QtFatalMsg, nullptr, 0, nullptr, QString(), QString());  // no crash
}

void TestLog::shortFunction_data() {
    QTest::addColumn<QString>("name");
    const auto row = [](const char* signature, const char* name) {
        QTest::newRow(signature) << QString(name);
    };
    row("int main(int, char**)", "main");
    row("Foo::Foo(QObject*)", "Foo::Foo");
    row("virtual Foo::~Foo()", "Foo::~Foo");
    row("static QString A::B::c(const QString&, int) const", "A::B::c");
    row("QMap<QString, QList<int> > A::map()", "A::map");
    row("std::function<void(int, char)> A::make(std::function<void()>)", "A::make");
    row("const char* A::text(QString (*)(int))", "A::text");
    row("QObject &A::ref()", "A::ref");
    row("A::run()::<lambda(int)>", "A::run");
    row("auto A::run()::(anonymous class)::operator()(int) const", "A::run");
    row("bool A::operator()(int, int) const", "A::operator()");
    row("A& A::operator<<(int)", "A::operator<<");
    row("A::operator bool() const", "A::operator bool");
    row("void {anonymous}::help(int)", "help");
    row("void (anonymous namespace)::help(int)", "help");
    row("T* Fenk::Singleton<T>::instance() [with T = A<int>]", "Fenk::Singleton<T>::instance");
    row("void setOperatorName(QString)", "setOperatorName");
    row("", "");
    row("<<(", "<<(");
}

void TestLog::shortFunction() {
    QTEST(LogFormat::shortFunction(QTest::currentDataTag()), "name");
    QCOMPARE(LogFormat::shortFunction(nullptr), QString());
}

void TestLog::rollsDaily() {
    const QString path = m_directory->filePath("sub/a.log");
    RollingFileAppender appender(path);
    appender.setFormat("%{message}\n");
    say(appender, "2024-02-28T23:59:59", "one");
    say(appender, "2024-02-29T00:00:00", "two");
    say(appender, "2024-02-28T23:59:59", "late");
    say(appender, "2024-02-29T12:00:00", "three");
    QCOMPARE(readAll(path + ".2024-02-28"), QByteArray("one\n"));
    QCOMPARE(readAll(path), QByteArray("two\nlate\nthree\n"));
    // A name that is taken is not overwritten.
    QVERIFY(QFile::copy(path + ".2024-02-28", path + ".2024-02-29"));
    say(appender, "2024-03-02T00:00:00", "four");
    QCOMPARE(readAll(path + ".2024-02-29"), QByteArray("one\n"));
    QCOMPARE(readAll(path + ".2024-02-29.2"), QByteArray("two\nlate\nthree\n"));
    QCOMPARE(int(QFile::permissions(path) & 0x77), 0);
}

void TestLog::rollsWhatAnEarlierRunLeft() {
    const QString path = m_directory->filePath("a.log");
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("old\n");
        QVERIFY(file.flush());
        QVERIFY(file.setFileTime(at("2024-01-05T10:00:00"), QFileDevice::FileModificationTime));
    }
    RollingFileAppender appender(path);
    appender.setFormat("%{message}\n");
    say(appender, "2024-01-07T00:00:00", "new");
    QCOMPARE(readAll(path + ".2024-01-05"), QByteArray("old\n"));
    QCOMPARE(readAll(path), QByteArray("new\n"));
}

void TestLog::limit_data() {
    QTest::addColumn<int>("files");
    QTest::addColumn<int>("left");
    QTest::newRow("five") << 5 << 5;
    QTest::newRow("one") << 1 << 1;
    QTest::newRow("none") << 0 << 9;
}

void TestLog::limit() {
    QFETCH(int, files);
    QFETCH(int, left);
    const QString path = m_directory->filePath("a.log");
    const QStringList others = {"a.log.bak", "a.log.2024-13-01", "xa.log.2020-01-01", "a.log.2020-01-01.gz"};
    for (const QString& other : others) {
        QFile file(m_directory->filePath(other));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    RollingFileAppender appender(path);
    appender.setFormat("%{message}\n");
    appender.setLogFilesLimit(files);
    for (int day = 1; day <= 9; ++day)
        say(appender, QStringLiteral("2024-05-0%1T01:00:00").arg(day), QString::number(day));
    const QStringList names = QDir(m_directory->path()).entryList(QDir::Files, QDir::Name);
    QCOMPARE(names.size(), left + others.size());
    QCOMPARE(readAll(path), QByteArray("9\n"));
    if (left > 1)
        QCOMPARE(readAll(path + ".2024-05-08"), QByteArray("8\n"));
}

void TestLog::fileComesBack() {
    const QString path = m_directory->filePath("d/a.log");
    FileAppender appender(path);
    appender.setFormat("%{message}\n");
    say(appender, "2024-05-01T01:00:00", "one");
    QVERIFY(QDir(m_directory->filePath("d")).removeRecursively());
    say(appender, "2024-05-01T01:00:00", "two");
    QCOMPARE(readAll(path), QByteArray("two\n"));
}

void TestLog::unopenableFileIsToldOnceAndTriedAgain() {
    QFile obstacle(m_directory->filePath("d"));
    QVERIFY(obstacle.open(QIODevice::WriteOnly));
    const QString path = m_directory->filePath("d/a.log");
    RollingFileAppender appender(path);
    appender.setFormat("%{message}\n");
    const StderrCapture capture(m_directory->filePath("stderr"));
    for (int i = 0; i < 3; ++i)
        say(appender, QStringLiteral("2024-05-01T01:00:%1").arg(i * 12 + 10), "lost");
    QCOMPARE(capture.lines(), 1);
    QVERIFY(obstacle.remove());
    say(appender, "2024-05-01T01:00:35", "too early");
    QVERIFY(!QFile::exists(path));
    say(appender, "2024-05-01T01:00:44", "back");
    QCOMPARE(readAll(path), QByteArray("back\n"));
    QCOMPARE(capture.lines(), 1);
}

void TestLog::fullDisk() {
    FileAppender appender("/dev/full");
    const StderrCapture capture(m_directory->filePath("stderr"));
    for (int i = 0; i < 5; ++i)
        say(appender, "2024-05-01T01:00:00", "lost");
    QCOMPARE(capture.lines(), 1);
}

void TestLog::tornLineIsEnded() {
    const QString path = m_directory->filePath("a.log");
    FileAppender appender(path);
    appender.setFormat("%{message}\n");
    const StderrCapture capture(m_directory->filePath("stderr"));
    ::signal(SIGXFSZ, SIG_IGN);
    rlimit before = {};
    QCOMPARE(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit small = {100, before.rlim_max};
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &small), 0);
    for (int i = 0; i < 3; ++i)
        say(appender, "2024-05-01T01:00:00", QString(80, 'x'));
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &before), 0);
    say(appender, "2024-05-01T01:00:00", "room again");
    const QList<QByteArray> lines = readAll(path).split('\n');
    QCOMPARE(lines.at(0), QByteArray(80, 'x'));
    QCOMPARE(lines.at(1), QByteArray(19, 'x'));
    QCOMPARE(lines.at(2), QByteArray("room again"));
    QCOMPARE(capture.lines(), 1);
}

void TestLog::threadsDoNotMixLines() {
    const QString path = m_directory->filePath("a.log");
    auto* appender = new RollingFileAppender(path);
    appender->setFormat("%{category} %{message}\n");
    Logger::globalInstance()->registerAppender(appender);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([i] {
            for (int n = 0; n < 500; ++n)
                qInfo("%s", QByteArray(300, char('a' + i)).constData());
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    Logger::globalInstance()->removeAppender(appender);
    QList<QByteArray> lines = readAll(path).split('\n');
    QVERIFY(lines.takeLast().isEmpty());
    QCOMPARE(lines.size(), 2000);
    for (const QByteArray& line : qAsConst(lines))
        QCOMPARE(line, "default " + QByteArray(300, line.at(line.size() - 1)));
}

void TestLog::appenderThatLogs() {
    class Chatty : public AbstractAppender {
    public:
        void append(const QDateTime&, QtMsgType, const char*, int, const char*, const QString&,
                    const QString& message) override {
            messages.append(message);
            qWarning("again");
        }
        QStringList messages;
    };
    auto* chatty = new Chatty;
    Logger::globalInstance()->registerAppender(chatty);
    qWarning("once");
    const QStringList messages = chatty->messages;
    Logger::globalInstance()->removeAppender(chatty);
    QCOMPARE(messages, QStringList("once"));
}

void TestLog::consoleThatHasGone() {
    const pid_t child = ::fork();
    if (child == 0) {
        ::signal(SIGPIPE, SIG_DFL);
        int pipeEnds[2] = {-1, -1};
        if (::pipe(pipeEnds) != 0)
            ::_exit(2);
        ::dup2(pipeEnds[1], 2);
        ::close(pipeEnds[0]);
        ConsoleAppender appender;
        say(appender, "2024-05-01T01:00:00", "into the void");
        ::_exit(0);
    }
    int status = 0;
    QCOMPARE(::waitpid(child, &status, 0), child);
    QVERIFY(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

void TestLog::fatalIsWrittenAndAborts() {
    const QString path = m_directory->filePath("a.log");
    const pid_t child = ::fork();
    if (child == 0) {
        const rlimit none = {0, 0};
        ::setrlimit(RLIMIT_CORE, &none);
        ::signal(SIGABRT, SIG_DFL);
        auto appender = std::make_unique<FileAppender>(path);
        appender->setFormat("%{type} %{function} %{message}\n");
        Logger::globalInstance()->registerAppender(std::move(appender));
        qFatal("runner id is null");
    }
    int status = 0;
    QCOMPARE(::waitpid(child, &status, 0), child);
    QVERIFY(WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT);
    QCOMPARE(readAll(path), QByteArray("Fatal TestLog::fatalIsWrittenAndAborts runner id is null\n"));
}

QTEST_GUILESS_MAIN(TestLog)
#include "tst_log.moc"
