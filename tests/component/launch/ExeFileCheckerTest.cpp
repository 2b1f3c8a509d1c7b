#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

#include "launch/inspection/ExeDetection.h"
#include "launch/inspection/ExeFileChecker.h"
#include "launch/inspection/ExeFileInfo.h"

/// What is known of a file before it runs. The tools are those of the machine and of the installed tree.
class ExeFileCheckerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void classification_data() {
        QTest::addColumn<QString>("values");
        QTest::addColumn<QString>("verdict");
        const auto row = [](const char* values, const char* verdict) {
            QTest::newRow(values) << values << verdict;
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
        QCOMPARE(info["peinfo"].toObject()["console"].toBool(true), false);
        QCOMPARE(info["verinfo"].toObject()["ProductName"].toString().isEmpty(), false);
        QFile file(dir.filePath("UnityPlayer.DLL"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QFile pdb(dir.filePath("a.pdb"));
        QVERIFY(pdb.open(QIODevice::WriteOnly));
        QVERIFY(checker.isGame() && checker.hasPackagedRuntimeFiles());
    }

    /// What the scanner knows: a real program with the signs of a tool behind it or in front.
    void scanner_data() {
        QTest::addColumn<QByteArray>("front");  // instead of the program when it is not empty
        QTest::addColumn<QByteArray>("behind");
        QTest::addColumn<QString>("found");  // the beginning of the first value
        const auto row = [](const char* found, const QByteArray& front, const QByteArray& behind) {
            QTest::newRow(found) << front << behind << found;
        };
        const QByteArray zeros(64, '\0');
        row("Compiler: MinGW(1", "", "");
        row("Installer: Nullsoft Scriptable Install System(3.08)", "",
            QByteArray("\0\0\0\0\xef\xbe\xad\xdeNullsoftInst", 20) + "Nullsoft Install System v3.08");
        row("Installer: Inno Setup(6.2.0)", "", "Inno Setup Setup Data (6.2.0) (u)");
        row("Installer: InstallShield", "", "ISSetupStream" + zeros);
        row("Archive: 7-Zip[self-extracting]", "", QByteArray("7z\xbc\xaf\x27\x1c\0\x04", 8) + zeros);
        row("Archive: RAR[self-extracting]", "", "Rar!\x1a\x07" + zeros);
        row("Archive: ZIP[self-extracting]", "", "PK\x03\x04" + zeros);
        row("Archive: Cabinet[self-extracting]", "", "MSCF" + zeros);
        row("Installer: Windows Installer",
            QByteArray("\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1", 8) + zeros +
                QByteArray("\x84\x10\x0c\0\0\0\0\0\xc0\0\0\0\0\0\0\x46", 16),
            "");
        row("Compiler: Go(1.21.3)", "", QByteArray("\xff Go buildinf:") + "go1.21.3");
        row("", "MZ", "");
        row(" ", "MZ" + QByteArray(100, '\xff'), "");
    }
    void scanner() {
        QFETCH(QByteArray, front);
        QFETCH(QByteArray, behind);
        QFETCH(QString, found);
        QFile program(QString(TEST_BINARY_DIR) + "/tests/programs/x64/quit.exe");
        if (!program.open(QIODevice::ReadOnly))
            QSKIP("the Windows compiler is not on this machine");
        QTemporaryDir dir;
        QFile file(dir.filePath("a.exe"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write((front.isEmpty() ? program.readAll() : front) + behind);
        file.close();
        ExeFileChecker checker(file.fileName());
        const QJsonArray detects = checker.info()["detects"].toArray();
        QCOMPARE(detects.size(), 1);
        const QString first = detects[0].toObject()["values"].toArray()[0].toObject()["string"].toString();
        QVERIFY2(("" + first).startsWith(found.trimmed()) && first.isEmpty() == found.trimmed().isEmpty(),
                 qPrintable(first));
        QCOMPARE(checker.isInstaller(), found.startsWith("Installer") || found.startsWith("Archive"));
    }

    void oddFiles() {
        QVERIFY(exeFileInfo("").isEmpty());
        QVERIFY(exeFileInfo("/usr").isEmpty());
        ExeFileChecker none("");
        QVERIFY(!none.isInstaller() && none.info()["brief"].toString().isEmpty());
        QTemporaryDir dir;
        // One byte too much to be scanned in place: nothing of the cut stays behind.
        const QStringList before = QDir(QDir::tempPath()).entryList({"{*large.exe"}, QDir::Files);
        QFile large(dir.filePath("large.exe"));
        QVERIFY(large.open(QIODevice::WriteOnly) && large.write("MZ") == 2 && large.resize(0x500001));
        large.close();
        ExeFileChecker checker(large.fileName());
        QVERIFY(!checker.isInstaller());
        QCOMPARE(QDir(QDir::tempPath()).entryList({"{*large.exe"}, QDir::Files), before);
    }
};

QTEST_GUILESS_MAIN(ExeFileCheckerTest)
#include "ExeFileCheckerTest.moc"
