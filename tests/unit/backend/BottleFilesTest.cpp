#include <QJsonArray>
#include <QJsonObject>
#include <QtTest>

#include "backend/BottleRecord.h"
#include "backend/DesktopUtils.h"
#include "backend/FileInfoCache.h"
#include "backend/MissingFonts.h"
#include "backend/ProgramRecord.h"
#include "support/LogCapture.h"
#include "support/TestHome.h"

using TestSupport::LogCapture;
using TestSupport::readFile;
using TestSupport::TestHome;

class BottleFilesTest : public QObject {
    Q_OBJECT
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
        MissingFonts::fix(home.path() + "/none", {"simsun.ttc"});
        QVERIFY(
            log.contains(QtWarningMsg, "where is fonts dir? " + home.path() + "/none/drive_c/windows/Fonts"));
        QVERIFY(!QFileInfo::exists(home.path() + "/none"));
    }

    void desktopShortcut_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("found");
        QTest::newRow("whole") << "Foo" << true;
        QTest::newRow("part") << "oo" << true;
        QTest::newRow("other") << "Bar" << false;
        QTest::newRow("brackets") << "Tool [x64]" << true;
        QTest::newRow("a directory doesn't count") << "Folder" << false;
        QTest::newRow("not only in the suffix") << "desktop" << false;
        QTest::newRow("another suffix") << "Text" << false;
    }
    void desktopShortcut() {
        QFETCH(QString, name);
        const TestHome home;
        home.write("Desktop/program-Foo-1.desktop", "");
        home.write("Desktop/Tool [x64].desktop", "");
        home.write("Desktop/Text.txt", "");
        QVERIFY(QDir().mkpath(home.desktop() + "/Folder.desktop"));
        QTEST(DesktopUtils::hasDesktopShortcut(name), "found");
    }

    void cacheRoundTrip() {
        const TestHome home;
        const FileInfoCache cache(home.path());
        QVERIFY(cache.setEntry("one", {"a.exe", "eyJ9", true}));
        QVERIFY(cache.setEntry("two", {"b.exe", "", false}));
        QCOMPARE(cache.entry("one").exeName, QString("a.exe"));
        QVERIFY(cache.entry("one").successed);
        QVERIFY(cache.remove("one"));
        const QByteArray rest = "{\"two\":{\"exename\":\"b.exe\",\"fileinfo_64\":\"\",\"successed\":false}}";
        QCOMPARE(readFile(cache.filePath()), rest);
        QVERIFY(!cache.contains("one"));
        QCOMPARE(cache.entry("one").fileInfo64, QString());
    }

    void removeWritesAFreshFile() {
        const TestHome home;
        QVERIFY(FileInfoCache(home.path()).remove("one"));
        QCOMPARE(readFile(home.path() + "/fileinfo.cache"), QByteArray("{}"));
    }

    void badCache_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("torn") << QByteArray("{\"one\":{\"exena");
        QTest::newRow("an array") << QByteArray("[1]");
        QTest::newRow("bytes") << QByteArray("\xff\x00\xfe", 3);
    }
    void badCache() {
        QFETCH(QByteArray, content);
        const TestHome home;
        const LogCapture log;
        home.write("fileinfo.cache", content);
        const FileInfoCache cache(home.path());
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

    void recordDefaults() {
        const QJsonObject unknown;
        QCOMPARE(BottleRecord::path(unknown), QString());
        QVERIFY(!BottleRecord::hasPrograms(unknown));
        QCOMPARE(BottleRecord::customDpi(unknown), 0);
        QVERIFY(!BottleRecord::hasMemOptimized(unknown));
        QVERIFY(BottleRecord::memOptimized(unknown, true));
        QVERIFY(!BottleRecord::memOptimized(unknown, false));
        const QJsonObject off{{"Parameters", QJsonObject{{"mem_optimized", false}, {"discrete_gpu", true}}}};
        QVERIFY(!BottleRecord::memOptimized(off, true));
        QVERIFY(BottleRecord::discreteGpu(off));
        // Values of a wrong type read like missing ones.
        const QJsonObject wrong{{"Path", 5}, {"External_Programs", "x"}, {"Installed_Dependencies", "x"}};
        QCOMPARE(BottleRecord::path(wrong), QString());
        QCOMPARE(BottleRecord::programs(wrong), QJsonObject());
        QVERIFY(BottleRecord::installedDependencies(wrong).isEmpty());
    }

    void adoptedRecordLosesItsMark() {
        const QJsonObject found{{"id", "u"}, {"auto_discovered", true}};
        QVERIFY(ProgramRecord::autoDiscovered(found));
        const QString text = "{\"id\":\"u\"}";
        QCOMPARE(ProgramRecord::toText(ProgramRecord::adopted(found)), text);
    }
};

QTEST_GUILESS_MAIN(BottleFilesTest)
#include "BottleFilesTest.moc"
