#include <unistd.h>

#include <QCheckBox>
#include <QDir>
#include <QImage>
#include <QJsonObject>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QSysInfo>
#include <QtTest>

#include "core/base/SettingsStore.h"
#include "e2e/InstalledApp.h"
#include "feedback/dialogs/FeedBackDialog.h"
#include "feedback/dialogs/ImageUploads.h"
#include "fenk/window/Application.h"
#include "support/AccessibleTree.h"
#include "support/StoreFiles.h"
#include "support/StoreServerProcess.h"
#include "support/TestHome.h"
#include "support/WindowFinder.h"

using namespace TestSupport;

namespace {
constexpr int LongMs = 180000;
const QString Secret = "sixteen letters.";
}  // namespace

/// A program fails, its user reports that, and whoever runs the report service reads it. With everything
/// real.
class FeedbackTest : public QObject {
    Q_OBJECT

    WindowFinder m_windows;
    QTemporaryDir m_dir;
    StoreFiles m_store;
    StoreServerProcess m_server{STORE_SERVER};

private Q_SLOTS:
    void initTestCase() {
        if (QStandardPaths::findExecutable("wine").isEmpty() || sample("needs_sqlite3").isEmpty())
            QSKIP("Wine or the Windows compiler is not on this machine");
        qunsetenv("CELLARIX_REPORT_SECRET");
        QVERIFY(QDir(m_dir.path()).mkdir("reports"));
        QFile secret(m_dir.filePath("reports/secret"));
        QVERIFY(secret.open(QIODevice::WriteOnly) && secret.write(Secret.toUtf8().toHex() + '\n') > 0);
        secret.close();
        QVERIFY2(m_server.start({"--data", m_store.path(), "--reports", m_dir.filePath("reports")}),
                 m_server.log().constData());
        InstalledApp::acceptAgreement();
        settingsStore()->setOption("feedback.cfg.base_url", m_server.address());
        settingsStore()->setOption("feedback.cfg.secret", Secret);
    }
    void cleanupTestCase() { killAllWineServers(); }

    void reportOfAFailedProgram() {
        {
            InstalledApp app({sampleAs("needs_sqlite3", m_dir.path(), "fails.exe")},
                             {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1"});
            QVERIFY2(app.waitForLog("show failed", LongMs), qPrintable(app.log()));
            QVERIFY2(AccessibleTree().press("Feedback"), qPrintable(app.log().right(2000)));
            const WindowInfo dialog = m_windows.waitForTitle("Feedback");
            QVERIFY(dialog.id && AccessibleTree().press("Cancel") && m_windows.waitUntilGone(dialog.id));
            QVERIFY(m_windows.close(m_windows.waitForTitle("fails.exe").id));
            QCOMPARE(app.waitForExit(), 0);
        }
        const QString bottle = bottleOf("fails");
        const QDir logs(bottlesJson("get", {bottle}).object()["Path"].toString() + "/logs");
        const QStringList wineLogs = logs.entryList({"wine-*.txt"}, QDir::Files);
        QVERIFY2(!wineLogs.isEmpty(), qPrintable(logs.entryList().join(' ')));

        const QPointer<FeedBackDialog> dialog = new FeedBackDialog(ProgramRef{bottle, {}});
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->setAppName("Fails");
        dialog->show();
        QTRY_VERIFY(dialog->findChild<QCheckBox*>("feedback_type_0"));
        dialog->findChild<QCheckBox*>("feedback_type_0")->click();
        dialog->findChild<QPlainTextEdit*>("feedback_description")->setPlainText("It does not start");
        QStringList pictures;
        for (const char* name : {"a.png", "b.jpg"}) {
            pictures += m_dir.filePath(name);
            QVERIFY(QImage(40, 30, QImage::Format_RGB32).save(pictures.last()));
        }
        dialog->findChild<ImageUploads*>()->add(pictures);
        auto* submit = dialog->findChild<QPushButton*>("feedback_submitbtn");
        QTRY_VERIFY_WITH_TIMEOUT(submit->isEnabled(), LongMs);
        submit->click();
        QTRY_VERIFY_WITH_TIMEOUT(!dialog, LongMs);

        const QString table = m_server.listedReports(m_dir.filePath("reports"));
        QVERIFY2(table.contains("Fails") && table.contains("It does not start"), qPrintable(table));
        for (const char* file : {"image-1.png", "image-2.jpg", "report.json", "logs.tar.gz"})
            QVERIFY2(table.contains(QString("/%1\n").arg(file)), qPrintable(table));
        const QStringList files = table.split('\n').filter("/logs.tar.gz");
        QVERIFY(QDir(m_dir.path()).mkdir("unpacked"));
        QVERIFY(runProcess("tar", {"-xzf", files.value(0).trimmed(), "-C", m_dir.filePath("unpacked"),
                                   "--strip-components=2"})
                    .ok());
        const QDir unpacked(m_dir.filePath("unpacked"));
        const QStringList sent = unpacked.entryList(QDir::Files);
        for (const QString& log : wineLogs)
            QVERIFY2(sent.contains(log), qPrintable(sent.join(' ')));
        QVERIFY(readFile(unpacked.filePath(wineLogs.first())).contains("sqlite3.dll"));
        for (const QString& file : sent) {
            const QString text = QString::fromUtf8(readFile(unpacked.filePath(file)));
            for (const QString& name :
                 {QDir::homePath(), QSysInfo::machineHostName(), "\\users\\" + QDir::home().dirName()})
                QVERIFY2(!text.contains(name), qPrintable(file + " has " + name));
        }
    }
};

int main(int argc, char** argv) {
    Fenk::Application app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    FeedbackTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "FeedbackTest.moc"
