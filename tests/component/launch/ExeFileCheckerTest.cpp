#include <QJsonArray>
#include <QJsonDocument>

#include "launch/inspection/ExeDetection.h"
#include "launch/inspection/ExeFileChecker.h"
#include "launch/inspection/ExeFileInfo.h"
#include "support/EnvironmentGuard.h"
#include "support/LogCapture.h"
#include "support/Table.h"

using namespace TestSupport;

/// The inspection of a file before it runs, with the tools of this machine and of the installed tree.
class ExeFileCheckerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void classification_data() {
        const Table<QString, QString> table("values", "verdict");
        const auto row = [&table](const char* values, const char* verdict) {
            table(values, values, verdict);
        };
        row("", "");
        row(R"({"type":"Packer"},{"type":"Installer"})", "installer");
        row(R"({"type":"Archive"},{"type":"Library","name":".NET","version":"v4"})", "installer");
        row(R"j({"type":"Compiler","string":"Compiler: Microsoft Visual Basic(6.0)"})j", "vbrun6");
        row(R"({"type":"Compiler","string":"Compiler: C++"},{"type":"Library","name":".NET","version":"v4.0.30319"})",
            "dotnet48 4.0.30319");
        row(R"({"type":"Protector","name":".NET Reactor","version":"2.5"})", "dotnet20 2.5");
        row(R"({"type":"Protector","name":"Other","version":"2.5"},{"type":"Library","name":".NET Framework","version":"x3"})",
            "dotnet35 3");
        row(R"({"type":"Library","name":".NET","version":"Core"})", "dotnet48 Core");
    }
    void classification() {
        QFETCH(QString, values);
        const QString text = "{\"detects\":[5,{\"values\":[" + values + "]}]}";
        const ExeDetection detection =
            ExeDetection::classify(QJsonDocument::fromJson(text.toUtf8()).object());
        QString verdict = detection.installer ? QString("installer") : detection.requiredComponent();
        if (!detection.dotnetVersion.isEmpty())
            verdict += ' ' + detection.dotnetVersion;
        QTEST(verdict, "verdict");
    }

    void realFiles() {
        QTemporaryDir dir;
        const QString console = dir.filePath("console.exe"), window = dir.filePath("窗口.exe");
        if (!QFile::copy(QString(TEST_BINARY_DIR) + "/tests/programs/x64/console.exe", console) ||
            !QFile::copy(QString(TEST_BINARY_DIR) + "/tests/programs/x64/window.exe", window))
            QSKIP("the Windows compiler is not on this machine");
        ExeFileChecker checker(console);
        QVERIFY(!checker.isInstaller() && checker.console && !checker.hasPackagedRuntimeFiles());
        QVERIFY(checker.info()["brief"].toString().contains("PE32+"));
        QVERIFY(!checker.isGame());
        const QJsonObject info = exeFileInfo(window);
        QVERIFY(!info["peinfo"].toObject()["console"].toBool(true));
        QVERIFY(!info["verinfo"].toObject()["ProductName"].toString().isEmpty());
        for (const char* name : {"UnityPlayer.DLL", "a.pdb"})
            QVERIFY(QFile(dir.filePath(name)).open(QIODevice::WriteOnly));
        QVERIFY(checker.isGame() && checker.hasPackagedRuntimeFiles());
    }

    void answers_data() {
        const Table<QString, bool, bool> row("printed", "isDocument", "installer");
        const QString values = R"({"values":[{"type":"Installer"}]})",
                      answer = R"({"detects":[)" + values + "]}";
        row("text ahead", "warning: no rules for x [1]\n" + answer, true, true);
        row("other document", values, false, false);
        row("torn", answer.chopped(3), false, false);
        row("list", '[' + answer + ']', false, false);
        row("other kinds", R"({"detects":)" + values + '}', true, false);
        row("nothing", "", false, false);
    }
    void answers() {
        QFETCH(QString, printed);
        const QJsonObject document = ExeDetection::document(printed.toUtf8());
        QTEST(document.contains("detects"), "isDocument");
        QTEST(ExeDetection::classify(document).installer, "installer");
    }

    /// The largest file that is scanned in place, and one that is a byte larger, of which a part is copied.
    void largeFiles() {
        QTemporaryDir dir;
        QFile file(dir.filePath("large.exe"));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("PK\x03\x04") == 4);
        file.close();
        EnvironmentGuard environment;
        environment.set("TMPDIR", QFile::encodeName(file.fileName()));  // no place for a cut
        LogCapture log;
        QVERIFY(file.resize(5242880) && ExeFileChecker(file.fileName()).isInstaller());
        QVERIFY2(log.lines().isEmpty(), qPrintable(log.text()));
        QVERIFY(file.resize(5242881) && !ExeFileChecker(file.fileName()).isInstaller());
        QVERIFY(log.contains("Failed to write cutted pe") && log.contains("Failed to get detects from diec"));
        QVERIFY(QDir(dir.path()).mkdir("cuts"));
        environment.set("TMPDIR", QFile::encodeName(dir.filePath("cuts")));
        QVERIFY(ExeFileChecker(file.fileName()).isInstaller());
        QVERIFY(QDir(dir.filePath("cuts")).isEmpty());
    }

    void oddFiles() {
        QVERIFY(exeFileInfo("").isEmpty());
        QVERIFY(exeFileInfo("/usr").isEmpty());
        ExeFileChecker none("");
        QVERIFY(!none.isInstaller() && none.info()["brief"].toString().isEmpty());
    }
};

QTEST_GUILESS_MAIN(ExeFileCheckerTest)
#include "ExeFileCheckerTest.moc"
