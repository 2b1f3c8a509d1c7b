#include <unistd.h>

#include <QAbstractButton>
#include <QProcess>
#include <QProgressBar>
#include <QSignalSpy>
#include <QtTest>

#include "packaging/start/BottleProgress.h"
#include "packaging/start/BottleProgressDialog.h"

class BottleProgressTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void linesMoveTheBar() {
        int ends[2];
        QCOMPARE(::pipe(ends), 0);
        BottleProgressDialog dialog("<b>Office</b>", BottleProgressDialog::Work::Make);
        const BottleProgress script(ends[0]);
        connect(&script, &BottleProgress::progress, &dialog, &BottleProgressDialog::setProgress);
        QSignalSpy ended(&script, &BottleProgress::ended);
        const auto* bar = dialog.findChild<QProgressBar*>();
        for (const auto& [text, value] :
             QVector<QPair<QByteArray, int>>{{"::progress:: 4", 0},
                                             {"1.5\n", 41},
                                             {"::progress:: 3\n::progress:: x\nnoise\n::progress:: 42\n", 42},
                                             {"::progress:: nan\n::progress:: 1e99\n", 100}}) {
            QCOMPARE(::write(ends[1], text.constData(), static_cast<size_t>(text.size())),
                     ssize_t(text.size()));
            QTRY_COMPARE(bar->value(), value);
        }
        ::close(ends[1]);
        QTRY_COMPARE(ended.count(), 1);
        ::close(ends[0]);
        QSignalSpy finished(&dialog, &QDialog::finished);
        dialog.show();
        dialog.button(0)->click();
        QCOMPARE(finished.count(), 1);
    }

    /// The window ends with the script, however that ends.
    void theProgramEndsWithItsInput() {
        QProcess program;
        program.start(BOTTLE_PROGRESS, {"Office", "make"});
        QVERIFY(program.waitForStarted());
        program.write("::progress:: 41.5\n");
        program.closeWriteChannel();
        QVERIFY(program.waitForFinished());
        QCOMPARE(program.exitCode(), 0);
    }
};

QTEST_MAIN(BottleProgressTest)
#include "BottleProgressTest.moc"
