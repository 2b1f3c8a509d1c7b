#include <QAbstractButton>
#include <QClipboard>
#include <QFileDialog>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>

#include "fenk/style/Theme.h"
#include "gui/fenk/FenkTestMain.h"
#include "support/KeyWalk.h"
#include "widgets/LogsWidget.h"
#include "widgets/RunningLogsDialog.h"

class LogsWidgetTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void keepsLinesAndShowsThemLater() {
        LogsWidget log;
        log.appendLine("first", 3);
        log.appendLine(QString::fromUtf8("坏\r\ntwo\u2028three"), 1);
        log.appendLine("", 3);
        LogsWidget wine;
        wine.appendLine("0024:err:module:x\n0024:fixme:ole:x\n12.5:0020:0024:warn:file:x", 1);
        QVERIFY(wine.isError(0) && !wine.isError(1) && !wine.isError(2));
        QCOMPARE(log.lastLines(2), QStringList({"three", ""}));
        QCOMPARE(log.lastLines(9), QStringList({"first", QString::fromUtf8("坏"), "two", "three", ""}));
        QVERIFY(log.document()->isEmpty());
        log.show();
        QTRY_COMPARE(log.document()->blockCount(), log.lineCount());
        for (const auto type : {Fenk::Theme::Light, Fenk::Theme::Dark}) {
            Fenk::Theme::instance()->setColorType(type);
            QTRY_COMPARE(log.document()->blockCount(), log.lineCount());
            for (int line = 0; line < log.lineCount() - 1; ++line) {
                QCOMPARE(log.isError(line), line > 0);
                QTextCursor cursor(log.document()->findBlockByNumber(line));
                cursor.movePosition(QTextCursor::EndOfBlock);
                const QBrush ink = cursor.charFormat().foreground();
                QCOMPARE(ink.style() != Qt::NoBrush, log.isError(line));
                QVERIFY(!log.isError(line) ||
                        ink.color() == Fenk::Theme::instance()->color(Fenk::Theme::Danger));
            }
        }
    }

    void followsTheEndUntilScrolledUp() {
        LogsWidget log;
        log.resize(430, 230);
        const auto grow = [&log](int lines) {
            for (int i = 0; i < lines; ++i)
                log.appendLine(QString("0024:fixme:a line that is long enough to be wrapped %1").arg(i), 3);
        };
        const QScrollBar* bar = log.verticalScrollBar();
        grow(10000);
        log.show();
        QTRY_COMPARE(log.document()->blockCount(), 10000);
        QTRY_COMPARE(bar->value(), bar->maximum());
        grow(5);
        QTRY_COMPARE(log.document()->blockCount(), 10005);
        QCOMPARE(bar->value(), bar->maximum());
        log.verticalScrollBar()->setValue(40);
        grow(5);
        QTRY_COMPARE(log.document()->blockCount(), 10010);
        QCOMPARE(bar->value(), 40);
    }

    void copiesAndSaves() {
        LogsWidget log;
        log.appendLine("one", 3);
        log.appendLine("two", 1);
        log.show();
        QTest::keyClick(&log, Qt::Key_C, Qt::ControlModifier);
        const QString all = QGuiApplication::clipboard()->text();
        const QRegularExpression whole("^\\d\\d:\\d\\d:\\d\\d one\n\\d\\d:\\d\\d:\\d\\d two\n$");
        QVERIFY2(whole.match(all).hasMatch(), qPrintable(all));
        log.moveCursor(QTextCursor::Start);
        log.moveCursor(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
        QTest::keyClick(&log, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), QString("one"));

        QFile saved(QDir::homePath() + "/a.log");
        QVERIFY(log.saveTo(saved.fileName()));
        QVERIFY(saved.open(QIODevice::ReadOnly));
        QCOMPARE(saved.readAll(), all.toUtf8());
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("cannot save the log to"));
        QVERIFY(!log.saveTo(QDir::homePath() + "/missing/a.log"));
    }

    void outlivesItsDialog() {
        QWidget banner;
        banner.setGeometry(60, 150, 660, 432);
        banner.show();
        LogsWidget log;
        log.appendLine("kept", 3);
        for (int i = 0; i < 2; ++i) {
            RunningLogsDialog dialog(&log, &banner);
            dialog.show();
            QVERIFY(QTest::qWaitForWindowExposed(&dialog));
            QVERIFY(log.isVisible());
            QCOMPARE(dialog.size(), QSize(478, 331));
            const QPoint above = banner.geometry().center() - dialog.geometry().center() - QPoint(0, 30);
            QVERIFY(above.manhattanLength() <= 2);
        }
        QVERIFY(!log.isVisible() && !log.parent());
        QCOMPARE(log.lastLines(1), QStringList("kept"));
    }

    /// Long lines get the room that the screen has.
    void isAsWideAsItsLines() {
        QWidget banner;
        LogsWidget log;
        log.appendLine(QString(70, 'x'), 3);
        RunningLogsDialog dialog(&log, &banner);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QVERIFY(log.hasFocus());
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        QCOMPARE(TestSupport::outOfReach(&dialog), QString());
        QVERIFY(dialog.width() > 478 && dialog.maximumWidth() > dialog.width());
        QCOMPARE(dialog.height(), 331);
        QTRY_COMPARE(log.document()->firstBlock().layout()->lineCount(), 1);
        connect(&dialog, &RunningLogsDialog::reportWanted, &dialog, [&] { dialog.copyReport("a report"); });
        dialog.button(0)->click();
        QCOMPARE(QGuiApplication::clipboard()->text(), QString("a report"));
        QVERIFY(dialog.isVisible());
        dialog.button(0)->setFocus();
        QTest::keyClick(dialog.windowHandle(), Qt::Key_S, Qt::ControlModifier);
        QVERIFY(dialog.findChild<QFileDialog*>());
        QCOMPARE(dialog.findChildren<QWidget*>("veil").size(), 1);
    }
};

FENK_TEST_MAIN(LogsWidgetTest)
#include "LogsWidgetTest.moc"
