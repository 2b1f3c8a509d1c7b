#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <memory>
#include <thread>
#include <vector>

#include "fenk/log/Log.h"
#include "support/Table.h"
#include "support/TestHome.h"

using namespace Fenk;
using TestSupport::readFile;
using TestSupport::Table;

namespace {

void say(AbstractAppender& appender, const QString& message, const QString& time = "2024-05-01T01:00:00") {
    appender.append(QDateTime::fromString(time, Qt::ISODate), QtInfoMsg, nullptr, 0, nullptr, "default",
                    message);
}

/// Redirects standard error into a file during its life.
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
    int lines() const { return readFile(m_path).count('\n'); }

private:
    QString m_path;
    int m_saved;
};

}  // namespace

class LogTest : public QObject {
    Q_OBJECT

    std::unique_ptr<TestSupport::TestHome> m_home;
    QString m_path;

private Q_SLOTS:
    void init() {
        m_home = std::make_unique<TestSupport::TestHome>();
        m_path = m_home->path() + "/logs/a.log";
    }

    void format_data() {
        const Table<QString, QString> row("format", "line");
        row("program's", "%{time}{yyyy-MM-dd, HH:mm:ss.zzz} [%{type:-7}] %{function}() %{message}\n",
            "2024-02-29, 23:59:58.007 [Info   ] A::b() m %1 %{type}\n");
        row("all", "%{file}:%{line} %{Function} %{category} %{type:6}|%{time}",
            "f.cpp:12 void A::b(int) net   Info|2024-02-29T23:59:58.007");
        row("percent and unknown", "100%% %{what} %{type:x} %{type % ", "100% %{what} %{type:x} %{type % ");
        row("escaped placeholder", "%%{type}", "%{type}");
        row("time without end", "%{time}{HH", "2024-02-29T23:59:58.007{HH");
    }
    void format() {
        QFETCH(QString, format);
        const QDateTime time(QDate(2024, 2, 29), QTime(23, 59, 58, 7));
        const QByteArray line = LogFormat(format).format(time, QtInfoMsg, "/a/f.cpp", 12, "void A::b(int)",
                                                         "net", "m %1 %{type}");
        QTEST(QString::fromUtf8(line), "line");
        LogFormat(format).format({}, QtFatalMsg, nullptr, 0, nullptr, {}, {});  // no crash
    }

    void shortFunction_data() {
        const Table<QString> row("name");
        row("int main(int, char**)", "main");
        row("static QString A::B::c(const QString&, int) const", "A::B::c");
        row("std::function<void(int, char)> A::make(std::function<void()>)", "A::make");
        row("const char* A::text(QString (*)(int))", "A::text");
        row("QObject &A::ref()", "A::ref");
        row("A::run()::<lambda(int)>", "A::run");
        row("auto A::run()::(anonymous class)::operator()(int) const", "A::run");
        row("bool A::operator()(int, int) const", "A::operator()");
        row("A& A::operator<<(int)", "A::operator<<");
        row("A::operator bool() const", "A::operator bool");
        row("void co_operator(int)", "co_operator");
        row("void {anonymous}::help(int)", "help");
        row("void (anonymous namespace)::help(int)", "help");
        row("T* Fenk::Singleton<T>::instance() [with T = A<int>]", "Fenk::Singleton<T>::instance");
        row("<<(", "<<(");
    }
    void shortFunction() {
        QTEST(LogFormat::shortFunction(QTest::currentDataTag()), "name");
        QCOMPARE(LogFormat::shortFunction(nullptr), QString());
    }

    void rollsDaily() {
        RollingFileAppender appender(m_path);
        appender.setFormat("%{message}\n");
        say(appender, "one", "2024-02-28T23:59:59");
        say(appender, "two", "2024-02-29T00:00:00");
        say(appender, "late", "2024-02-28T23:59:59");
        say(appender, "three", "2024-02-29T12:00:00");
        QCOMPARE(readFile(m_path + ".2024-02-28"), QByteArray("one\n"));
        QCOMPARE(readFile(m_path), QByteArray("two\nlate\nthree\n"));
        // An existing file is not overwritten.
        QVERIFY(QFile::copy(m_path + ".2024-02-28", m_path + ".2024-02-29"));
        say(appender, "four", "2024-03-02T00:00:00");
        QCOMPARE(readFile(m_path + ".2024-02-29"), QByteArray("one\n"));
        QCOMPARE(readFile(m_path + ".2024-02-29.2"), QByteArray("two\nlate\nthree\n"));
        QCOMPARE(int(QFile::permissions(m_path) & 0x77), 0);
    }

    void rollsWhatAnEarlierRunLeft() {
        QFile file(m_home->write("logs/a.log", "old\n"));
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(QDate(2024, 1, 5).startOfDay(), QFileDevice::FileModificationTime));
        RollingFileAppender appender(m_path);
        appender.setFormat("%{message}\n");
        say(appender, "new", "2024-01-07T00:00:00");
        QCOMPARE(readFile(m_path + ".2024-01-05"), QByteArray("old\n"));
        QCOMPARE(readFile(m_path), QByteArray("new\n"));
    }

    void limit_data() {
        const Table<int, int> row("files", "left");
        row("five", 5, 5);
        row("none", 0, 9);
    }
    void limit() {
        QFETCH(int, files);
        QFETCH(int, left);
        for (const char* other :
             {"a.log.bak", "a.log.2024-13-01", "xa.log.2020-01-01", "a.log.2020-01-01.gz"})
            m_home->write(QString("logs/") + other, "");
        RollingFileAppender appender(m_path);
        appender.setFormat("%{message}\n");
        appender.setLogFilesLimit(files);
        for (int day = 1; day <= 9; ++day)
            say(appender, QString::number(day), QStringLiteral("2024-05-0%1T01:00:00").arg(day));
        QCOMPARE(QDir(m_home->path() + "/logs").entryList(QDir::Files).size(), left + 4);
        QCOMPARE(readFile(m_path), QByteArray("9\n"));
        QCOMPARE(readFile(m_path + ".2024-05-08"), QByteArray(left > 1 ? "8\n" : ""));
    }

    void fileComesBack() {
        FileAppender appender(m_path);
        appender.setFormat("%{message}\n");
        say(appender, "one");
        QVERIFY(QDir(m_home->path() + "/logs").removeRecursively());
        say(appender, "two");
        QCOMPARE(readFile(m_path), QByteArray("two\n"));
    }

    void unopenableFileIsToldOnceAndTriedAgain() {
        const QString blocker = m_home->write("logs", "");
        RollingFileAppender appender(m_path);
        appender.setFormat("%{message}\n");
        const StderrCapture capture(m_home->path() + "/stderr");
        for (const char* second : {"10", "22", "34"})
            say(appender, "lost", QString("2024-05-01T01:00:") + second);
        QCOMPARE(capture.lines(), 1);
        QVERIFY(QFile::remove(blocker));
        say(appender, "too early", "2024-05-01T01:00:35");
        QVERIFY(!QFile::exists(m_path));
        say(appender, "back", "2024-05-01T01:00:44");
        QCOMPARE(readFile(m_path), QByteArray("back\n"));
        QCOMPARE(capture.lines(), 1);
    }

    void tornLineIsEnded() {
        FileAppender appender(m_path);
        appender.setFormat("%{message}\n");
        const StderrCapture capture(m_home->path() + "/stderr");
        ::signal(SIGXFSZ, SIG_IGN);
        rlimit before = {};
        QCOMPARE(::getrlimit(RLIMIT_FSIZE, &before), 0);
        const rlimit small = {100, before.rlim_max};
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &small), 0);
        for (int i = 0; i < 3; ++i)
            say(appender, QString(80, 'x'));
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &before), 0);
        say(appender, "room again");
        QCOMPARE(readFile(m_path), QByteArray(80, 'x') + '\n' + QByteArray(19, 'x') + "\nroom again\n");
        QCOMPARE(capture.lines(), 1);
    }

    void threadsDoNotMixLines() {
        auto* appender = new RollingFileAppender(m_path);
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
        QList<QByteArray> lines = readFile(m_path).split('\n');
        QVERIFY(lines.takeLast().isEmpty());
        QCOMPARE(lines.size(), 2000);
        for (const QByteArray& line : qAsConst(lines))
            QCOMPARE(line, "default " + QByteArray(300, line.at(line.size() - 1)));
    }

    void appenderThatLogs() {
        struct Chatty : AbstractAppender {
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

    void consoleThatHasGone() {
        const pid_t child = ::fork();
        if (child == 0) {
            ::signal(SIGPIPE, SIG_DFL);
            int pipeEnds[2] = {-1, -1};
            if (::pipe(pipeEnds) != 0)
                ::_exit(2);
            ::dup2(pipeEnds[1], 2);
            ::close(pipeEnds[0]);
            ConsoleAppender appender;
            say(appender, "into the void");
            ::_exit(0);
        }
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QVERIFY(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
};

QTEST_GUILESS_MAIN(LogTest)
#include "LogTest.moc"
