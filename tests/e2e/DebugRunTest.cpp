#include <QAbstractButton>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QJsonObject>
#include <QPointer>
#include <QStandardPaths>
#include <QtTest>

#include "e2e/InstalledApp.h"
#include "fenk/window/Application.h"
#include "shell/configuration/hints/DebuggingLogsEdit.h"
#include "shell/configuration/hints/DebuggingLogsView.h"
#include "shell/configuration/page/BottlesConfigView.h"
#include "shell/configuration/page/DebuggingLogsFrame.h"
#include "support/AccessibleTree.h"
#include "support/Table.h"
#include "support/WindowFinder.h"

using namespace TestSupport;

namespace {

constexpr int LongMs = 180000;
const char Bottle[] = "office";
const char Title[] = "Sample of a debugging run";

QString idOf(const QString& program) {
    return QString("%1-0000-4000-8000-000000000000")
        .arg(program.toLatin1().toHex().leftJustified(8, '0', true).constData());
}

}  // namespace

/// What a debugging run of the configuration window shows of programs that run and fail in Wine. With
/// everything real.
class DebugRunTest : public QObject {
    Q_OBJECT

    WindowFinder m_windows;
    QPointer<BottlesConfigView> m_view;

    QAbstractButton* button(const char* name) const { return m_view->findChild<QAbstractButton*>(name); }
    DebuggingLogsFrame* frame() const { return m_view->findChild<DebuggingLogsFrame*>(); }
    void start(const QString& program, const QString& arguments) {
        callBottles("updateExternalProgram",
                    {Bottle, QString::fromUtf8(QJsonDocument(QJsonObject{{"id", idOf(program)},
                                                                         {"name", program},
                                                                         {"path", sample(program)},
                                                                         {"arguments", arguments}})
                                                   .toJson(QJsonDocument::Compact))});
        m_view = new BottlesConfigView;
        QSignalSpy loaded(m_view, &BottlesConfigView::bottlesLoaded);
        m_view->loadBottle(Bottle);
        m_view->show();
        QTRY_COMPARE_WITH_TIMEOUT(loaded.count(), 1, LongMs);
        m_view->selectProgramById(idOf(program));
        QTRY_VERIFY_WITH_TIMEOUT(button("debug_btn")->isEnabled(), LongMs);
        button("debug_btn")->click();
        QTRY_VERIFY_WITH_TIMEOUT(button("stop_debug_btn")->isVisible(), LongMs);
    }
    void waitForEnd() {
        QTRY_VERIFY_WITH_TIMEOUT(button("debug_btn")->isVisible() && button("debug_btn")->isEnabled(),
                                 LongMs);
    }

private Q_SLOTS:
    void initTestCase() {
        if (QStandardPaths::findExecutable("wine").isEmpty() || sample("window").isEmpty())
            QSKIP("Wine or the Windows compiler is not on this machine");
        QApplication::setQuitOnLastWindowClosed(false);
        InstalledApp::acceptAgreement();
        QVERIFY(bottlesJson("createBottles", {Bottle, ""})["ok"].toBool());
    }
    void cleanup() { delete m_view; }
    void cleanupTestCase() { killAllWineServers(); }

    void stopEndsTheProgram() {
        start("window", QString("\"%1\"").arg(Title));
        const WindowInfo window = m_windows.waitForTitle(Title, LongMs);
        QVERIFY(window.id);
        QElapsedTimer clock;
        clock.start();
        button("stop_debug_btn")->click();
        waitForEnd();
        qInfo() << "stopped after" << clock.elapsed() << "ms";
        QVERIFY(!m_windows.byTitle(Title).id);
        QVERIFY(frame()->log()->store().lineCount() > 0);
    }

    void failuresAreExplained_data() {
        const Table<QString, QString, QString> row("program", "arguments", "hint");
        row("font", "fault", "window-font", "Missing Fonts for app: simsun.ttc");
        row("crash", "fault", "crash", "Application is not running as expected");
        row("console", "console", "", "For console applications, you can run it in terminal");
    }
    void failuresAreExplained() {
        QFETCH(QString, program);
        QFETCH(QString, arguments);
        QFETCH(QString, hint);
        start(program, arguments);
        if (arguments == "crash") {  // Wine's own window says so and waits
            QVERIFY(m_windows.waitForTitle("Program Error", LongMs).id);
            button("stop_debug_btn")->click();
        }
        waitForEnd();
        QTRY_VERIFY2_WITH_TIMEOUT(frame()->hints()->toPlainText().contains(hint),
                                  frame()->log()->allLines().constData(), LongMs);
        if (!arguments.contains("font"))
            return;
        m_view->slotsHandleLogsAnchorClicked(QUrl("fonts:simsun.ttc"));
        QTRY_VERIFY(frame()->hints()->toPlainText().contains("Missing fonts has been fixed"));
        const QString path = bottlesJson("get", {Bottle}).object()["Path"].toString();
        QVERIFY(QFileInfo(path + "/drive_c/windows/Fonts/simsun.ttc").isSymLink());
    }

    /// The banner of a failed launch leads to the same hints.
    void bannerLeadsToTheHints() {
        const QTemporaryDir directory;
        const QString file = sampleAs("needs_sqlite3", directory.path(), "needy.exe");
        InstalledApp app({file}, {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1"});
        QVERIFY2(app.waitForLog("show failed", LongMs), qPrintable(app.log()));
        const AccessibleTree tree;
        QVERIFY(tree.press("repair_debug_btn"));
        const WindowInfo window = m_windows.waitForTitle("Configuration of needy", LongMs);
        QVERIFY2(window.id, qPrintable(app.log()));
        QTRY_VERIFY2_WITH_TIMEOUT(tree.names().contains("What you can try"), qPrintable(app.log()), LongMs);
        QVERIFY(m_windows.close(window.id));
        QCOMPARE(app.waitForExit(), 0);
    }
};

int main(int argc, char** argv) {
    Fenk::Application app(argc, argv);
    DebugRunTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "DebugRunTest.moc"
