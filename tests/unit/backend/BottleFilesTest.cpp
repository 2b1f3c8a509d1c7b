#include <QJsonObject>

#include "backend/DesktopUtils.h"
#include "backend/FileInfoCache.h"
#include "backend/MissingFonts.h"
#include "backend/WindowsPath.h"
#include "support/LogCapture.h"
#include "support/Table.h"
#include "support/TestHome.h"

using TestSupport::LogCapture;
using TestSupport::readFile;
using TestSupport::TestHome;

class BottleFilesTest : public QObject {
    Q_OBJECT

    TestHome m_bottle;  // for the paths

private Q_SLOTS:
    void fonts() {
        const TestHome home;
        const LogCapture log;
        const QString fonts = home.path() + "/b/drive_c/windows/Fonts";
        home.write("b/drive_c/windows/Fonts/arial.ttf", "own");
        MissingFonts::fix(home.path() + "/b", {"simsun.ttc", "arial.ttf", "../escape.ttf", "..", "", "a\\b"});
        QCOMPARE(QFile::symLinkTarget(fonts + "/simsun.ttc"), MissingFonts::replacementFile());
        QCOMPARE(readFile(fonts + "/arial.ttf"), QByteArray("own"));
        QVERIFY(!QFileInfo(home.path() + "/b/drive_c/windows/escape.ttf").isSymLink());
        QCOMPARE(QDir(fonts).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size(), 2);
        // Once more: the dangling link of a machine without the font is no reason to complain.
        const int warnings = log.lines().size();
        MissingFonts::fix(home.path() + "/b", {"simsun.ttc"});
        QCOMPARE(log.lines().size(), warnings);
    }

    void fontsWithoutDirectory() {
        const TestHome home;
        const LogCapture log;
        MissingFonts::fix(home.path(), {"simsun.ttc"});
        QVERIFY(log.contains(QtWarningMsg, "where is fonts dir? " + home.path() + "/drive_c/windows/Fonts"));
    }

    void desktopShortcut() {
        const TestHome home;
        for (const char* file :
             {"program-Foo-1.desktop", "Tool [x64].desktop", "Text.txt", "Folder.desktop/x"})
            home.write(QString("Desktop/") + file, "");
        for (const char* name : {"Foo", "oo", "Tool [x64]"})
            QVERIFY2(DesktopUtils::hasDesktopShortcut(name), name);
        for (const char* name : {"Bar", "Folder", "desktop", "Text"})
            QVERIFY2(!DesktopUtils::hasDesktopShortcut(name), name);
    }

    void cacheRoundTrip() {
        const TestHome home;
        const FileInfoCache cache(home.path());
        QVERIFY(cache.remove("one"));
        QCOMPARE(readFile(cache.filePath()), QByteArray("{}"));
        QVERIFY(cache.setEntry("one", {"a.exe", "eyJ9", true}));
        QVERIFY(cache.setEntry("two", {"b.exe", "", false}));
        QCOMPARE(cache.entry("one").exeName, QString("a.exe"));
        QVERIFY(cache.entry("one").successed);
        QVERIFY(cache.remove("one"));
        const QByteArray rest = "{\"two\":{\"exename\":\"b.exe\",\"fileinfo_64\":\"\",\"successed\":false}}";
        QCOMPARE(readFile(cache.filePath()), rest);
        QVERIFY(!cache.contains("one"));
    }

    void badCache_data() {
        const TestSupport::Table<QByteArray> row("content");
        row("torn", "{\"one\":{\"exena");
        row("bytes", QByteArray("\xff\x00\xfe", 3));
    }
    void badCache() {
        QFETCH(QByteArray, content);
        const TestHome home;
        const LogCapture log;
        const FileInfoCache cache(home.path());
        home.write("fileinfo.cache", content);
        QCOMPARE(cache.read(), QJsonObject());
        QVERIFY(log.contains(QtWarningMsg, cache.filePath()));
        QVERIFY(cache.setEntry("one", {"a.exe", "", true}));
        QCOMPARE(cache.entry("one").exeName, QString("a.exe"));
    }

    void unwritableCache() {
        const LogCapture log;
        QVERIFY(!FileInfoCache("/nonexistent/bottle").remove("one"));
        QVERIFY(log.contains(QtWarningMsg, "/nonexistent/bottle/fileinfo.cache"));
    }

    void initTestCase() {
        for (const char* file : {"Program Files/App/A.exe", "Program Files/App/setup[1].exe",
                                 "Program Files/App/.Hidden.exe", "a b.exe", "Twin.exe", "twin.exe"})
            m_bottle.write(QString("drive_c/") + file, "");
        QVERIFY(QDir().mkpath(m_bottle.path() + "/dosdevices"));
        QVERIFY(QFile::link("../drive_c", m_bottle.path() + "/dosdevices/c:"));
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
        QCOMPARE(WindowsPath::toUnix(m_bottle.path(), path), m_bottle.path() + "/dosdevices/" + expected);
        QCOMPARE(WindowsPath::toUnix("/nonexistent/b", R"(C:\X.exe)"),
                 QString("/nonexistent/b/dosdevices/c:/X.exe"));
    }
};

QTEST_GUILESS_MAIN(BottleFilesTest)
#include "BottleFilesTest.moc"
