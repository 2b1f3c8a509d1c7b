#include <QtTest>

#include "backend/WindowsPath.h"

class WindowsPathTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() {
        QVERIFY(m_dir.isValid());
        bottle = m_dir.path() + "/bottle";
        for (const char* directory : {"drive_c/Program Files/App", "drive_c/users", "dosdevices"})
            QVERIFY(QDir().mkpath(bottle + "/" + directory));
        for (const char* file : {"Program Files/App/A.exe", "Program Files/App/setup[1].exe",
                                 "Program Files/App/.Hidden.exe", "a b.exe", "Twin.exe", "twin.exe"}) {
            QFile out(bottle + "/drive_c/" + file);
            QVERIFY(out.open(QIODevice::WriteOnly));
        }
        QVERIFY(QFile::link("../drive_c", bottle + "/dosdevices/c:"));
    }

    void isWindowsPath_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("windows");
        QTest::newRow("file") << R"(C:\Program Files\x.exe)" << true;
        QTest::newRow("small drive") << R"(z:\x)" << true;
        QTest::newRow("bare drive") << "C:" << true;
        QTest::newRow("root") << R"(C:\)" << true;
        QTest::newRow("doubled") << R"(C:\\)" << true;
        QTest::newRow("forward slash") << "C:/x" << false;
        QTest::newRow("relative to the drive") << "C:x" << false;
        QTest::newRow("two letters") << R"(CC:\x)" << false;
        QTest::newRow("inside") << R"(x C:\x)" << false;
        QTest::newRow("unix") << "/usr/bin/x" << false;
        QTest::newRow("share") << R"(\\host\x)" << false;
        QTest::newRow("empty") << "" << false;
    }
    void isWindowsPath() {
        QFETCH(QString, path);
        QTEST(WindowsPath::isWindowsPath(path), "windows");
    }

    void toUnix_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("expected");  // below dosdevices
        QTest::newRow("as written") << R"(C:\Program Files\App\A.exe)"
                                    << "c:/Program Files/App/A.exe";
        QTest::newRow("wrong case") << R"(C:\program files\aPP\a.EXE)"
                                    << "c:/Program Files/App/A.exe";
        QTest::newRow("missing part") << R"(C:\program files\None\a.exe)"
                                      << "c:/program files/None/a.exe";
        QTest::newRow("missing file") << R"(C:\program files\app\b.exe)"
                                      << "c:/program files/app/b.exe";
        QTest::newRow("brackets are letters") << R"(C:\program files\app\SETUP[1].exe)"
                                              << "c:/Program Files/App/setup[1].exe";
        QTest::newRow("stars match nothing") << R"(C:\program files\app\*.exe)"
                                             << "c:/program files/app/*.exe";
        QTest::newRow("hidden") << R"(C:\program files\app\.hidden.exe)"
                                << "c:/Program Files/App/.Hidden.exe";
        QTest::newRow("exact before alike") << R"(C:\twin.exe)"
                                            << "c:/twin.exe";
        QTest::newRow("tab") << "C:\\a\tb.exe"
                             << "c:/a b.exe";
        QTest::newRow("line end, wrong case") << "C:\\A\nB.exe"
                                              << "c:/a b.exe";
        QTest::newRow("doubled backslashes") << R"(C:\\program files\\App\\a.exe)"
                                             << "c:/Program Files/App/A.exe";
        QTest::newRow("bare drive") << "C:"
                                    << "c:";
        QTest::newRow("root") << R"(C:\)"
                              << "c:/";
        QTest::newRow("no such drive") << R"(Q:\x.exe)"
                                       << "q:/x.exe";
        QTest::newRow("empty") << ""
                               << "";
    }
    void toUnix() {
        QFETCH(QString, path);
        QFETCH(QString, expected);
        QCOMPARE(WindowsPath::toUnix(bottle, path), bottle + "/dosdevices/" + expected);
    }

    void bottleWithoutDirectory() {
        QCOMPARE(WindowsPath::toUnix("/nonexistent/b", R"(C:\X.exe)"),
                 QString("/nonexistent/b/dosdevices/c:/X.exe"));
    }

private:
    QTemporaryDir m_dir;
    QString bottle;
};

QTEST_GUILESS_MAIN(WindowsPathTest)
#include "WindowsPathTest.moc"
