#include <signal.h>

#include "core/base/ToolProcess.h"
#include "support/Table.h"

using State = ToolProcess::State;
Q_DECLARE_METATYPE(ToolProcess::State)

namespace {

/// What a shell makes of the script; "$1" and the others are the words.
ToolProcess::Result shell(const QString& script, const QStringList& words = {}, int timeoutMs = 30000,
                          const QProcessEnvironment& environment = {}) {
    return ToolProcess::run("/bin/sh", QStringList{"-c", script, "sh"} + words, timeoutMs, environment);
}

}  // namespace

class ToolProcessTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void endings_data() {
        const TestSupport::Table<QString, QStringList, State, int, QString> row(
            "program", "arguments", "state", "exitCode", "warning");
        row("good", "/bin/sh", {"-c", "exit 0"}, State::Exited, 0, "");
        row("bad", "/bin/sh", {"-c", "exit 3"}, State::Exited, 3, "tool ended with 3 .*/bin/sh");
        row("crash", "/bin/sh", {"-c", "ulimit -c 0; kill -SEGV $$"}, State::Crashed, -1,
            "tool crashed: .*/bin/sh");
        row("missing", "no-such-tool", {"x"}, State::FailedToStart, -1,
            "tool failed to start: \"no-such-tool\"");
        row("out of PATH", "true", {}, State::Exited, 0, "");
        row("standard input is empty", "/bin/sh", {"-c", "! read -r line"}, State::Exited, 0, "");
    }
    void endings() {
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

    void output() {
        const ToolProcess::Result result =
            shell("printf '[%s]' \"$@\"; printf told >&2", {"a b", "$(id)", "", "*;\"'"});
        QCOMPARE(result.standardOutput, QByteArray("[a b][$(id)][][*;\"']"));
        QCOMPARE(result.standardError, QByteArray("told"));
        QVERIFY(!result.truncated);
    }

    void largeOutput_data() {
        const TestSupport::Table<int, int> row("out", "err");
        row("as much as may be", 16, 0);
        row("too much output", 40, 1);
        row("too much error", 0, 40);
    }
    void largeOutput() {
        QFETCH(int, out);
        QFETCH(int, err);
        const int limit = ToolProcess::MaxOutputBytes >> 20;
        const ToolProcess::Result result = shell("head -c $1M /dev/zero; head -c $2M /dev/zero >&2",
                                                 {QString::number(out), QString::number(err)});
        QCOMPARE(result.state, State::Exited);
        QCOMPARE(result.standardOutput.size(), qMin(out, limit) << 20);
        QCOMPARE(result.standardError.size(), qMin(err, limit) << 20);
        QCOMPARE(result.truncated, out > limit || err > limit);
    }

    void environment() {
        QProcessEnvironment own;
        own.insert("TOOL_TEST", "its own");
        const QString script = "printf '%s, %s' \"${TOOL_TEST-unset}\" \"${HOME-unset}\"";
        QCOMPARE(shell(script).standardOutput, "unset, " + qgetenv("HOME"));
        QCOMPARE(shell(script, {}, 30000, own).standardOutput, QByteArray("its own, unset"));
    }

    void timeOutKillsTheGroup() {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("tool did not end within 1500 ms: .*sleep"));
        const ToolProcess::Result result = shell("sleep 300 & echo $!; wait", {}, 1500);
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

    void childLeftBehindIsNotWaitedFor() {
        const ToolProcess::Result result = shell("sleep 300 & echo $!");
        QVERIFY(result.succeeded());
        const pid_t left = result.standardOutput.trimmed().toInt();
        QVERIFY(left > 0);
        QCOMPARE(::kill(left, SIGKILL), 0);
    }
};

QTEST_GUILESS_MAIN(ToolProcessTest)
#include "ToolProcessTest.moc"
