#include <QAbstractButton>
#include <QAccessible>
#include <QClipboard>
#include <QFileDialog>
#include <QRegularExpression>
#include <QScrollBar>

#include "fenk/style/Theme.h"
#include "gui/fenk/FenkTestMain.h"
#include "support/KeyWalk.h"
#include "support/Table.h"
#include "widgets/LogLineReader.h"
#include "widgets/LogsWidget.h"
#include "widgets/RunningLogsDialog.h"

using TestSupport::press;
using TestSupport::Table;

static int lastShown(const LogView& view) {
    return view.shownLines().empty() ? -1 : view.shownLines().back().line;
}

class LogsWidgetTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void readsLines_data() {
        const Table<QByteArrayList, QStringList> row("chunks", "lines");
        const QByteArray longLine(LogLineReader::MaxLineBytes - 1, 'x');
        row("partial", {"a\nb", "c\nd"}, {"a", "bc", "d"});
        row("empty line", {"\n\n"}, {"", ""});
        row("split character", {"\xe4\xb8", "\xad\n"}, {"中"});
        row("no UTF-8", {"a\xff\n"}, {QString("a") + QChar(QChar::ReplacementCharacter)});
        row("colours", {"\x1b[1;3", "1mred\x1b[0m \x1b]0;title\x07z\a\n"}, {"red z"});
        row("progress", {"10 %\r20 %\r\n"}, {"20 %"});
        row("too long", {longLine + "\xe4\xb8\xad!\n"}, {QString(longLine), "中!"});
        row("too long, without end", {longLine + "\xe4\xb8\xad!"}, {QString(longLine), "中!"});
    }
    void readsLines() {
        QFETCH(QByteArrayList, chunks);
        LogLineReader reader;
        QStringList lines;
        for (const QByteArray& chunk : chunks)
            lines += reader.add(chunk);
        QTEST(lines + reader.rest(), "lines");
    }

    void storeIsBounded_data() {
        const Table<int, int, int> row("size", "count", "kept");
        row("lines", 30, LogStore::MaxLines + 5, LogStore::MaxLines);
        row("bytes", 9000, 6000, int(LogStore::MaxBytes / (9000 + LogStore::LineOverhead)));
        row("one line", 1 << 20, 1, 1);
    }
    void storeIsBounded() {
        QFETCH(int, size);
        QFETCH(int, count);
        LogStore store;
        const QString tail(size - 10, 'x');
        for (int i = 0; i < count; ++i)
            store.append(QString("%1").arg(i, 10) + tail, 3);
        QTEST(store.lineCount(), "kept");
        QCOMPARE(store.droppedLines(), qint64(count - store.lineCount()));
        QVERIFY(store.bytes() <= LogStore::MaxBytes);
        QCOMPARE(store.text(0).left(10).toInt(), count - store.lineCount());
        QVERIFY(store.longestLine().size() <= LogStore::MaxLineBytes + 3);
    }

    void keepsLinesAndShowsThemLater() {
        LogsWidget log;
        log.appendLine("first", 3);
        log.appendLine(QString::fromUtf8("坏\r\ntwo\u2028three"), 1);
        log.appendLine("", 3);
        LogStore wine;
        wine.append("0024:err:module:x\n0024:fixme:ole:x\n12.5:0020:0024:warn:file:x", 1);
        QVERIFY(wine.isError(0) && !wine.isError(1) && !wine.isError(2));
        QCOMPARE(log.lastLines(2), QStringList({"three", ""}));
        QCOMPARE(log.lastLines(9), QStringList({"first", QString::fromUtf8("坏"), "two", "three", ""}));
        QVERIFY(log.shownLines().empty());
        log.show();
        QCOMPARE(int(log.shownLines().size()), 5);
        for (const auto type : {Fenk::Theme::Light, Fenk::Theme::Dark}) {
            Fenk::Theme::instance()->setColorType(type);
            const QImage picture = log.viewport()->grab().toImage();
            for (const LogView::ShownLine& shown : log.shownLines()) {
                int red = 0;
                for (int y = int(shown.top); y < int(shown.top + shown.height); ++y) {
                    for (int x = 0; x < picture.width(); ++x)
                        red += qRed(picture.pixel(x, y)) > qGreen(picture.pixel(x, y)) + 60;
                }
                QCOMPARE(red > 0, log.store().isError(shown.line));
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
        const auto last = [&log] { return lastShown(log); };
        const QScrollBar* bar = log.verticalScrollBar();
        grow(10000);
        log.show();
        QCOMPARE(last(), 9999);
        QCOMPARE(bar->value(), bar->maximum());
        grow(5);
        QTRY_COMPARE(last(), 10004);
        QCOMPARE(bar->value(), bar->maximum());
        log.resize(300, 300);
        QCOMPARE(last(), 10004);
        log.verticalScrollBar()->setValue(40);
        grow(5);
        const int before = bar->maximum();
        QTRY_COMPARE(bar->maximum(), before + 5);
        QCOMPARE(bar->value(), 40);
        press(&log, Qt::Key_End, Qt::ControlModifier);
        grow(5);
        QTRY_COMPARE(last(), 10014);
        press(&log, Qt::Key_PageUp);
        QVERIFY(bar->value() < bar->maximum() && last() < 10014);
        press(&log, Qt::Key_Home, Qt::ControlModifier);
        press(&log, Qt::Key_Down);
        QCOMPARE(log.shownLines().front().line, 0);
        QVERIFY(log.shownLines().front().top < 0);
    }

    void dropsLinesThatAreShown() {
        LogsWidget log;
        log.show();
        for (int i = 0; i < LogStore::MaxLines; ++i)
            log.appendLine(QString::number(i), 3);
        QTRY_COMPARE(lastShown(log), LogStore::MaxLines - 1);
        log.verticalScrollBar()->setValue(3);
        log.select({2, 0}, {4, 1});
        const auto* notice = log.findChild<QWidget*>("dropped_lines");
        QVERIFY(!notice->isVisible());
        log.appendLine("more\nmore\nmore", 3);
        QCOMPARE(log.shownLines().front().layout->text(), QString("3"));
        QCOMPARE(log.cursor().selectedText(), QString("3\n4"));
        log.viewport()->grab();
        QTRY_VERIFY(notice->isVisible());
        QCOMPARE(log.verticalScrollBar()->value(), 0);
        QVERIFY(log.allLines().startsWith("The oldest lines were dropped: 3\n"));
        log.appendLine((QString(9000, 'x') + "\n").repeated(4000), 3);
        log.viewport()->grab();
    }

    void copiesAndSaves() {
        LogsWidget log;
        log.appendLine("one more", 3);
        log.appendLine("two", 1);
        log.show();
        press(&log, Qt::Key_C, Qt::ControlModifier);
        const QString all = QGuiApplication::clipboard()->text();
        const QRegularExpression whole("^\\d\\d:\\d\\d:\\d\\d one more\n\\d\\d:\\d\\d:\\d\\d two\n$");
        QVERIFY2(whole.match(all).hasMatch(), qPrintable(all));

        QFile saved(QDir::homePath() + "/a.log");
        QVERIFY(log.saveTo(saved.fileName()));
        QVERIFY(saved.open(QIODevice::ReadOnly));
        QCOMPARE(saved.readAll(), all.toUtf8());
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("cannot save the log to"));
        QVERIFY(!log.saveTo(QDir::homePath() + "/missing/a.log"));
    }

    void copiesWhatIsSelected() {
        LogsWidget log;
        log.appendLine("one more\ntwo\n" + QString("three ").repeated(40), 3);
        log.resize(400, 200);
        log.show();
        const auto copied = [&log] {
            press(&log, Qt::Key_C, Qt::ControlModifier);
            return QGuiApplication::clipboard()->text();
        };
        const auto at = [&log](int line, int column) {
            const LogView::ShownLine& shown = log.shownLines()[size_t(line)];
            return QPoint(int(shown.layout->lineAt(0).cursorToX(column)) + 5, int(shown.top) + 6);
        };
        press(&log, Qt::Key_End, Qt::ShiftModifier);
        QCOMPARE(copied(), QString("one more"));
        press(&log, Qt::Key_Down, Qt::ShiftModifier);
        press(&log, Qt::Key_Left, Qt::ShiftModifier);
        QCOMPARE(copied(), QString("one more\ntw"));
        QTest::mouseClick(log.viewport(), Qt::LeftButton, {}, at(0, 4));
        QTest::mouseClick(log.viewport(), Qt::LeftButton, Qt::ShiftModifier, at(1, 1));
        QCOMPARE(copied(), QString("more\nt"));
        QTest::mouseDClick(log.viewport(), Qt::LeftButton, {}, at(0, 6));
        QCOMPARE(copied(), QString("more"));
        QTest::mousePress(log.viewport(), Qt::LeftButton, {}, at(0, 6));
        QCOMPARE(copied(), QString("one more"));
        press(&log, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(copied(), log.lastLines(3).join('\n'));
        QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(&log);
        QVERIFY(seen->state().readOnly);
        QCOMPARE(seen->textInterface()->text(4, 12), QString("more\ntwo"));
        seen->textInterface()->setSelection(0, 9, 12);
        QCOMPARE(copied(), QString("two"));
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
        QTRY_COMPARE(log.shownLines().front().layout->lineCount(), 1);
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
