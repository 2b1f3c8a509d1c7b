#include "backend/WindowsPath.h"

#include "support/Table.h"
#include "support/TestHome.h"

class WindowsPathTest : public QObject {
    Q_OBJECT

    TestSupport::TestHome m_home;

private Q_SLOTS:
    void initTestCase() {
        for (const char* file : {"Program Files/App/A.exe", "Program Files/App/setup[1].exe",
                                 "Program Files/App/.Hidden.exe", "a b.exe", "Twin.exe", "twin.exe"})
            m_home.write(QString("drive_c/") + file, "");
        QVERIFY(QDir().mkpath(m_home.path() + "/dosdevices"));
        QVERIFY(QFile::link("../drive_c", m_home.path() + "/dosdevices/c:"));
    }

    void isWindowsPath() {
        for (const char* path : {R"(C:\Program Files\x.exe)", R"(z:\x)", "C:", R"(C:\)", R"(C:\\)"})
            QVERIFY2(WindowsPath::isWindowsPath(path), path);
        for (const char* path : {"C:/x", "C:x", R"(CC:\x)", R"(x C:\x)", "/usr/bin/x", R"(\\host\x)", ""})
            QVERIFY2(!WindowsPath::isWindowsPath(path), path);
    }

    void toUnix_data() {
        const TestSupport::Table<QString, QString> row("path", "expected");  // below dosdevices
        row("wrong case", R"(C:\program files\aPP\a.EXE)", "c:/Program Files/App/A.exe");
        row("missing part", R"(C:\program files\None\a.exe)", "c:/program files/None/a.exe");
        row("brackets are letters", R"(C:\program files\app\SETUP[1].exe)",
            "c:/Program Files/App/setup[1].exe");
        row("stars match nothing", R"(C:\program files\app\*.exe)", "c:/program files/app/*.exe");
        row("hidden", R"(C:\program files\app\.hidden.exe)", "c:/Program Files/App/.Hidden.exe");
        row("exact before alike", R"(C:\twin.exe)", "c:/twin.exe");
        row("line end, wrong case", "C:\\A\nB.exe", "c:/a b.exe");
        row("doubled backslashes", R"(C:\\program files\\App\\a.exe)", "c:/Program Files/App/A.exe");
        row("bare drive", "C:", "c:");
        row("empty", "", "");
    }
    void toUnix() {
        QFETCH(QString, path);
        QFETCH(QString, expected);
        QCOMPARE(WindowsPath::toUnix(m_home.path(), path), m_home.path() + "/dosdevices/" + expected);
        QCOMPARE(WindowsPath::toUnix("/nonexistent/b", R"(C:\X.exe)"),
                 QString("/nonexistent/b/dosdevices/c:/X.exe"));
    }
};

QTEST_GUILESS_MAIN(WindowsPathTest)
#include "WindowsPathTest.moc"
