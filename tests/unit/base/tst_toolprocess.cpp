#include <signal.h>

#include <QElapsedTimer>
#include <QtTest>
#include <thread>
#include <vector>

#include "core/base/ToolProcess.h"

using State = ToolProcess::State;
Q_DECLARE_METATYPE(ToolProcess::State)

class TestToolProcess : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void endings_data();
    void endings();
    void output();
    void largeOutput_data();
    void largeOutput();
    void environment();
    void timeOutKillsTheGroup();
    void childLeftBehindIsNotWaitedFor();
    void fromManyThreads();
};

void TestToolProcess::endings_data() {
    QTest::addColumn<QString>("program");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<State>("state");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("warning");
    QTest::newRow("good") << CHILD << QStringList({"exit", "0"}) << State::Exited << 0 << "";
    QTest::newRow("bad") << CHILD << QStringList({"exit", "3"}) << State::Exited << 3
                         << "tool ended with 3 .*child";
    QTest::newRow("crash") << CHILD << QStringList("crash") << State::Crashed << -1
                           << "tool crashed: .*child";
    QTest::newRow("missing") << "no-such-tool" << QStringList("x") << State::FailedToStart << -1
                             << "tool failed to start: \"no-such-tool\"";
    QTest::newRow("no program") << "" << QStringList() << State::FailedToStart << -1
                                << "tool failed to start";
    QTest::newRow("a directory") << "/tmp" << QStringList() << State::FailedToStart << -1
                                 << "tool failed to start";
    QTest::newRow("out of PATH") << "true" << QStringList() << State::Exited << 0 << "";
    QTest::newRow("standard input is empty") << CHILD << QStringList("stdin") << State::Exited << 0 << "";
}

void TestToolProcess::endings() {
    QFETCH(QString, program);
    QFETCH(QStringList, arguments);
    QFETCH(QString, warning);
    if (!warning.isEmpty())
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(warning));
    const ToolProcess::Result result = ToolProcess::run(program, arguments);
    QTEST(result.state, "state");
    QTEST(result.exitCode, "exitCode");
    QCOMPARE(result.succeeded(), warning.isEmpty());
}

void TestToolProcess::output() {
    const ToolProcess::Result result = ToolProcess::run(CHILD, {"say", "a b", "$(id)", "", "*;\"'"});
    QCOMPARE(result.standardOutput, QByteArray("[say][a b][$(id)][][*;\"']"));
    QCOMPARE(result.standardError, QByteArray("told"));
    QVERIFY(!result.truncated);
}

void TestToolProcess::largeOutput_data() {
    QTest::addColumn<int>("out");
    QTest::addColumn<int>("err");
    QTest::newRow("both whole") << 3 << 3;
    QTest::newRow("as much as may be") << 16 << 0;
    QTest::newRow("too much output") << 40 << 1;
    QTest::newRow("too much error") << 0 << 40;
}

void TestToolProcess::largeOutput() {
    QFETCH(int, out);
    QFETCH(int, err);
    const int limit = ToolProcess::MaxOutputBytes >> 20;
    const ToolProcess::Result result =
        ToolProcess::run(CHILD, {"flood", QString::number(out), QString::number(err)});
    QCOMPARE(result.state, State::Exited);
    QCOMPARE(result.standardOutput.size(), qMin(out, limit) << 20);
    QCOMPARE(result.standardError.size(), qMin(err, limit) << 20);
    QCOMPARE(result.truncated, out > limit || err > limit);
}

void TestToolProcess::environment() {
    qputenv("TOOL_TEST", "ours");
    QCOMPARE(ToolProcess::run(CHILD, {"environment", "TOOL_TEST"}).standardOutput, QByteArray("ours"));
    QProcessEnvironment environment;
    environment.insert("TOOL_TEST", "its own");
    QCOMPARE(ToolProcess::run(CHILD, {"environment", "TOOL_TEST"}, 30000, environment).standardOutput,
             QByteArray("its own"));
    QCOMPARE(ToolProcess::run(CHILD, {"environment", "HOME"}, 30000, environment).standardOutput,
             QByteArray("(unset)"));
}

void TestToolProcess::timeOutKillsTheGroup() {
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("tool did not end within 300 ms: .*child.*hang"));
    const ToolProcess::Result result = ToolProcess::run(CHILD, {"hang"}, 300);
    QCOMPARE(result.state, State::TimedOut);
    QCOMPARE(result.exitCode, -1);
    const pid_t grandchild = result.standardOutput.trimmed().toInt();
    QVERIFY(grandchild > 0);
    // Gone, or dead and waiting for whoever inherited it.
    const auto dead = [grandchild] {
        QFile stat(QStringLiteral("/proc/%1/stat").arg(grandchild));
        return !stat.open(QIODevice::ReadOnly) || stat.readAll().contains(") Z ");
    };
    QTRY_VERIFY(dead());
}

void TestToolProcess::childLeftBehindIsNotWaitedFor() {
    const ToolProcess::Result result = ToolProcess::run(CHILD, {"leave"});
    QVERIFY(result.succeeded());
    const pid_t left = result.standardOutput.trimmed().toInt();
    QVERIFY(left > 0);
    QCOMPARE(::kill(left, SIGKILL), 0);
}

void TestToolProcess::fromManyThreads() {
    std::atomic_int good{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&good, i] {
            good += ToolProcess::run(CHILD, {"say", QString::number(i)}).standardOutput ==
                    QByteArray("[say][" + QByteArray::number(i) + "]");
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    QCOMPARE(int(good), 8);
}

QTEST_GUILESS_MAIN(TestToolProcess)
#include "tst_toolprocess.moc"
