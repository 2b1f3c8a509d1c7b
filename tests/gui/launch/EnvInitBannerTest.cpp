#include "environment/EnvInitBanner.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QtTest>

#include "core/ApplicationWindows.h"
#include "core/EnvironmentSetup.h"
#include "core/ServiceAgreement.h"
#include "environment/BottleEnvScript.h"
#include "fenk/window/Application.h"
#include "launch/LaunchWindows.h"
#include "shell/configuration/page/ProtonSetup.h"
#include "support/KeyWalk.h"
#include "support/LogCapture.h"
#include "support/Table.h"
#include "support/TestHome.h"

using TestSupport::readFile;
using TestSupport::Table;

static const char Waits[] = R"(echo begin; while [ ! -e "$0.go" ]; do sleep 0.05; done; echo end)";

/// The banner and its record on stand-in scripts: what is shown, and each way in which the two can end.
class EnvInitBannerTest : public QObject {
    Q_OBJECT

    TestSupport::TestHome m_home;
    QString m_path;

    /// A script that notes its arguments, answers "-c" with the code, and otherwise does the rest.
    BottleEnvScript record(const QByteArray& body, int code = 0, bool executable = true) {
        m_path = m_home.write(QString("%1.sh").arg(++m_count),
                              "#!/bin/sh\necho \"$@\" >>\"$0.ran\"\n[ \"$1\" = -c ] && exit " +
                                  QByteArray::number(code) + "\n" + body + "\n");
        if (executable)
            QFile::setPermissions(m_path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return {{}, nullptr, false, m_path, {"-r"}, "Title", "Completed", "Message"};
    }
    QByteArray runs() const { return readFile(m_path + ".ran"); }
    void release() const { QVERIFY(QFile(m_path + ".go").open(QIODevice::WriteOnly)); }

    /// Starts the script, does something while its banner is shown, and closes that.
    template <class Work>
    static void whileShown(const std::function<void()>& start, BottleEnvScript& script, Work work) {
        QObject whileStarting;
        QTimer::singleShot(0, &whileStarting, [&] {
            work();
            if (script.banner)
                script.banner->close();
        });
        start();
    }
    template <class Work>
    static void whileShown(BottleEnvScript& script, Work work) {
        whileShown([&script] { script.start(true); }, script, work);
    }
    static QString text(const BottleEnvScript& script) {
        return script.banner->findChild<QPlainTextEdit*>("env_logs")->toPlainText();
    }
    static bool hasEnded(const BottleEnvScript& script) {
        return script.banner->findChild<QWidget*>("start_using_btn")->isVisible();
    }

    int m_count = 0;

private Q_SLOTS:
    void needsRun_data() {
        const Table<QString, bool> row("check", "needed");
        row("nothing to do", "0", false);
        row("something to do", "3", true);
        row("missing", "missing", false);
        row("cannot be run", "plain", false);
        row("killed", "killed", false);
    }
    void needsRun() {
        QFETCH(QString, check);
        BottleEnvScript script = record("", check.toInt(), check != "plain");
        if (check == "missing")
            script.scriptPath += ".none";
        if (check == "killed")
            m_home.write(QFileInfo(m_path).fileName(), "#!/bin/sh\nkill -9 $$\n");
        const TestSupport::LogCapture log;
        QTEST(script.needsRun(), "needed");
        QCOMPARE(log.contains("init check return code: "), check != "missing");
    }

    void showsOutputAndEnd() {
        BottleEnvScript script = record("seq 6000; printf '<b>\\033[1mbold</b>'; printf err >&2; exit 1");
        whileShown(script, [&] {
            QTRY_VERIFY(!script.running);
            const QStringList lines = text(script).split('\n');
            QCOMPARE(lines.size(), int(EnvInitBanner::MaxLines));
            QVERIFY(lines.contains("<b>bold</b>") && lines.contains("err") && lines.contains("6000"));
            QVERIFY(hasEnded(script));
            QCOMPARE(script.banner->windowTitle(), "Completed");
            QVERIFY(script.banner->findChild<QLabel*>("env_reason")->text().contains("exit code 1"));
            QCOMPARE(script.banner->size(), QSize(660, 432));
            QTest::mouseClick(script.banner->findChild<QWidget*>("start_using_btn"), Qt::LeftButton);
            QVERIFY(!script.banner->isVisible());
        });
        QVERIFY(!script.banner && !script.process);
        QCOMPARE(runs(), "-r\n");
    }

    void logsTakeThePlaceOfThePicture() {
        BottleEnvScript script = record(Waits);
        whileShown(script, [&] {
            auto* expand = script.banner->findChild<QPushButton*>("expand_logsbtn");
            auto* logs = script.banner->findChild<QPlainTextEdit*>("env_logs");
            const QPoint before = expand->mapTo(script.banner, QPoint());
            QVERIFY(!logs->isVisible());
            QTest::mouseClick(expand, Qt::LeftButton);
            QVERIFY(logs->isVisible());
            QCOMPARE(logs->size(), QSize(500, 200));
            QCOMPARE(expand->mapTo(script.banner, QPoint()), before);
            QTRY_COMPARE(text(script), "begin");
            release();
            QTRY_VERIFY(hasEnded(script));
            QVERIFY(!logs->isVisible());
        });
        QVERIFY(!script.banner);
    }

    void closedWhileRunning_data() {
        const Table<bool> row("endsHidden");
        row("ends while hidden", true);
        row("ends when shown again", false);
    }
    void closedWhileRunning() {
        QFETCH(bool, endsHidden);
        BottleEnvScript script = record(Waits);
        whileShown(script, [&] { QTest::keyClick(script.banner, Qt::Key_Escape); });
        QVERIFY(script.running && script.banner && !script.banner->isVisible());
        const QPointer<EnvInitBanner> banner = script.banner;
        if (endsHidden) {
            release();
            QTRY_VERIFY(!script.running);
        }
        whileShown(script, [&] {
            QVERIFY(script.banner == banner && banner->isVisible());
            release();
            QTRY_VERIFY(hasEnded(script));
            QCOMPARE(text(script), "begin\nend");
        });
        QVERIFY(!banner);
        QCOMPARE(runs(), "-r\n");
    }

    void cannotBeStarted() {
        BottleEnvScript script = record("exit 0", 0, false);
        whileShown(script, [&] {
            QTRY_VERIFY(hasEnded(script));
            QVERIFY(text(script).contains(m_path));
            QVERIFY(script.banner->windowTitle() != script.completedTitle);
            QFile::setPermissions(m_path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
            const auto* retry = script.banner->findChild<QPushButton*>("retry_btn");
            QVERIFY(retry->isVisible() && retry->hasFocus());
            QCOMPARE(TestSupport::outOfReach(script.banner), QString());
            QTest::keyClick(script.banner->focusWidget(), Qt::Key_Return);
            QVERIFY(script.running && !retry->isVisible());
            QTRY_VERIFY(hasEnded(script));
            QCOMPARE(script.banner->windowTitle(), script.completedTitle);
            QVERIFY(!retry->isVisible());
        });
        QVERIFY(!script.running && !script.banner && !script.process);
        QCOMPARE(runs(), "-r\n");
    }

    void agreementIsReadByKeys() {
        QTimer::singleShot(0, this, [] {
            QWidget* dialog = QApplication::activeModalWidget();
            QVERIFY(QTest::qWaitForWindowActive(dialog));
            QCOMPARE(TestSupport::outOfReach(dialog), QString());
            QTest::keyClick(dialog->windowHandle(), Qt::Key_Escape);
        });
        QVERIFY(!ServiceAgreement::check());
    }

    void update_data() { closedWhileRunning_data(); }
    void update() {
        QFETCH(bool, endsHidden);
        QWidget window, other;
        other.winId();
        window.show();
        QSignalSpy closed(qApp, &QGuiApplication::lastWindowClosed);
        BottleEnvScript script = record(Waits);
        whileShown([&] { EnvironmentSetup::update(script); }, script,
                   [&] {
                       QVERIFY(!window.isVisible() && script.banner->isVisible());
                       if (endsHidden)
                           return;
                       release();
                       QTRY_VERIFY(hasEnded(script));
                   });
        QCOMPARE(window.isVisible(), !endsHidden);
        QVERIFY(!other.isVisible());
        QCOMPARE(closed.count(), 0);
        if (endsHidden)
            Fenk::Dialog::setNextAnswer(0);
        QCOMPARE(EnvironmentSetup::refuses(script, {"a.exe"}), endsHidden);
        QVERIFY(!EnvironmentSetup::refuses(script, {}));
        release();
        QTRY_VERIFY(!script.running);
        QCOMPARE(runs(), "-r\n");
        delete script.banner;
    }

    void ensure_data() {
        const Table<int, QString> row("code", "runs");
        row("needed", 1, "-c\n-c\n-r\n");
        row("not needed", 0, "-c\n");
    }
    void ensure() {
        QFETCH(int, code);
        BottleEnvScript script = record("", code);
        bool needed = false;
        whileShown([&] { needed = EnvironmentSetup::ensure(script); }, script,
                   [&] { QTRY_VERIFY(hasEnded(script)); });
        QCOMPARE(needed, code != 0);
        QVERIFY(!script.banner);
        QTEST(QString(runs()), "runs");
    }

    /// A Proton is chosen: its set-up comes first where it is needed, and the choice follows unless its
    /// window is gone. The banner may be closed before the script has ended.
    void protonBeforeItsFirstUse_data() {
        const Table<int, bool, bool, QByteArray, bool> row("code", "isEarly", "isClosed", "runs", "goesOn");
        row("ready", 0, false, false, "-c\n", true);
        row("not ready", 1, false, false, "-c\n\n", true);
        row("not ready, banner closed early", 1, true, false, "-c\n\n", true);
        row("not ready, window closed", 1, false, true, "-c\n\n", false);
    }
    void protonBeforeItsFirstUse() {
        QFETCH(int, code);
        QFETCH(bool, isEarly);
        QFETCH(bool, isClosed);
        QFETCH(bool, goesOn);
        record(Waits, code);
        BottleEnvScript& script = protonInitScript();
        script.scriptPath = m_path;
        ApplicationWindows::setOpeners();
        auto window = std::make_unique<QObject>();
        bool isChosen = false, wasEarly = false;
        QString title;
        ProtonSetup::prepare(window.get(), [&isChosen] { isChosen = true; });
        if (!isEarly)
            release();
        QTimer look;
        connect(&look, &QTimer::timeout, &look, [&] {
            if (!script.banner || !script.banner->isVisible() || (!isEarly && !hasEnded(script)))
                return;
            title = script.banner->windowTitle();
            if (isClosed)
                window.reset();
            script.banner->close();
        });
        look.start(10);
        if (isEarly) {
            QTRY_VERIFY(!title.isEmpty() && !script.banner->isVisible());
            QVERIFY(script.running);
            wasEarly = isChosen;
            release();
        }
        if (goesOn)
            QTRY_VERIFY(isChosen);
        else
            QTRY_VERIFY(!window && !script.banner);
        QVERIFY(!wasEarly && !script.running);
        delete script.banner;
        QTEST(runs(), "runs");
        QCOMPARE(title, !code ? QString() : isEarly ? script.title : script.completedTitle);
        QCOMPARE(isChosen, goesOn);
        LaunchWindows::instance() = {};
    }
};

int main(int argc, char** argv) {
    Fenk::Application app(argc, argv);
    EnvInitBannerTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "EnvInitBannerTest.moc"
