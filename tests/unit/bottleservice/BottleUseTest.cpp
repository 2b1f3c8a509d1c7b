#include "bottleservice/bottles/BottleUse.h"

#include "bottleservice/bottles/FoundPrograms.h"
#include "bottleservice/bottles/PackageOrigin.h"
#include "bottleservice/wine/AddedFiles.h"
#include "support/Table.h"
#include "support/TestHome.h"

/// What keeps a bottle that a launch has left behind, and what of it counts.
class BottleUseTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    /// A bottle may go only when every fact is known and says no.
    void everyFactKeeps() {
        const auto mayGo = [](std::optional<bool> BottleUse::*fact, std::optional<bool> value) {
            BottleUse use{false, false, false, false, false, false};
            use.*fact = value;
            return use.reasonToKeep().isEmpty();
        };
        for (const auto fact : {&BottleUse::isRunning, &BottleUse::isInstalling, &BottleUse::hasPrograms,
                                &BottleUse::hasShortcuts, &BottleUse::hasFiles}) {
            QVERIFY(mayGo(fact, false));
            QVERIFY(!mayGo(fact, true) && !mayGo(fact, std::nullopt));
        }
        QVERIFY(!BottleUse({false, false, false, false, false, true}).reasonToKeep().isEmpty());
    }

    void packageOrigins_data() {
        using State = PackageOrigin::State;
        const TestSupport::Table<QString, QString, QByteArray, QString, int> row("bottle", "file", "text",
                                                                                 "installed", "state");
        const QByteArray origin = R"({"format":1,"package":"com.a"})";
        row("ordinary", "b", "bottle.yml", "", "com.a", int(State::Own));
        row("installed", "b", ".package/origin.json", origin, "com.a", int(State::Installed));
        row("removed", "b", ".package/origin.json", origin, "com.b", int(State::Removed));
        row("older bottle", "com.a", ".package/version", "1", "com.a", int(State::Installed));
        row("older second bottle", "com.a.package", ".package/version", "1", "com.a", int(State::Installed));
        row("older, removed", "com.a", ".package/version", "1", "com.b", int(State::Removed));
        row("later format", "com.a", ".package/origin.json", R"({"format":2,"package":"com.a"})", "com.b",
            int(State::Unknown));
        row("leads elsewhere", "b", ".package/origin.json", R"({"format":1,"package":"../a"})", "com.b",
            int(State::Unknown));
        row("broken", "com.a", ".package/origin.json", "{", "com.b", int(State::Unknown));
        row("unreadable", "com.a", ".package/origin.json/x", "", "com.b", int(State::Unknown));
    }
    void packageOrigins() {
        QFETCH(QString, bottle);
        QFETCH(QString, file);
        QFETCH(QByteArray, text);
        QFETCH(QString, installed);
        const TestSupport::TestHome home;
        if (file.startsWith(".package"))
            home.write(bottle + "/.package/version", "1");
        home.write(bottle + '/' + file, text);
        home.write("apps/" + installed + "/files/package.json", "{}");
        const QString path = home.path() + '/' + bottle, apps = home.path() + "/apps";
        const auto state = PackageOrigin::stateOf(PackageOrigin::look(path, apps));
        QTEST(int(state), "state");
        QCOMPARE(PackageOrigin::sharedFiles(path, apps),
                 state == PackageOrigin::State::Installed ? apps + "/com.a/files/bottle" : QString());
    }

    void droppedLinks() {
        const TestSupport::TestHome home;
        const QString drive = home.path() + "/b/drive_c/", shared = home.write("apps/com.a/files/x.dll", "x");
        const QString other = home.write("apps/com.ab/y.dll", "y");
        QVERIFY(QDir().mkpath(drive + "Program"));
        QFile::link(shared, drive + "Program/alive.dll");
        QFile::link(shared + "gone", drive + "Program/dead.dll");
        QFile::link(other, drive + "other.dll");
        const auto fault = [&](bool isCancelled) {
            return PackageOrigin::dropLinks(home.path() + "/b", "com.a", isCancelled, home.path() + "/apps");
        };
        QCOMPARE(fault(true).text(), Reason(Reason::Cancelled).text());
        QCOMPARE(fault(false).text(), QString());
        QCOMPARE(QDir(drive + "Program").entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot),
                 QStringList("alive.dll"));
        QVERIFY(!QFileInfo(drive + "Program/alive.dll").isSymLink());
        QCOMPARE(QFileInfo(drive + "other.dll").symLinkTarget(), other);
    }

    void expectedFiles() {
        for (const char* path :
             {"bottle.yml", "system.reg", "reg76460000.tmp", "wineserver", "logs/wine-a.exe.txt",
              "icons/x.png", "drive_c/windows/Temp/x/y", "drive_c/windows/setupapi.log",
              "drive_c/windows/inf/input.pnf", "drive_c/windows/logs/a/b.txt",
              "drive_c/users/a/AppData/Local/Microsoft/Windows/INetCookies/index.dat",
              "drive_c/users/a/Temp/nsa1.tmp/System.dll", "drive_c/users/a/AppData/Local/Temp/~a.txt"})
            QVERIFY2(AddedFiles::isExpected(path), path);
        for (const char* path :
             {"other.yml", "data.reg", "drive_c/bottle.yml", "drive_c/windows/system32/a.log",
              "drive_c/windows/win.ini", "drive_c/windows/Fonts/a.ttf", "drive_c/logs/a.txt",
              "drive_c/users/a/Temp/App/app.exe", "drive_c/users/a/Temp/setup.exe",
              "drive_c/users/a/AppData/Local/App/Temp/a.tmp", "drive_c/users/a/Documents/a.tmp",
              "drive_c/users/a/AppData/Local/Microsoft/Windows/INetCookiesX/index.dat"})
            QVERIFY2(!AddedFiles::isExpected(path), path);
    }

    void likelyPrograms_data() {
        const TestSupport::Table<QString, QString> row("files", "likely");
        row("one folder", "Program Files/A/b.exe Program Files/A/a.exe",
            "Program Files/A/a.exe Program Files/A/b.exe");
        row("parts", "Program Files/A/bin/part.exe Program Files/A/a.exe Program Files/AB/c.exe",
            "Program Files/A/a.exe Program Files/AB/c.exe");
        row("no program above", "A/bin/a.exe A/unins000.exe A/CrashSender.exe A/updater.exe", "A/bin/a.exe");
        row("named like its folder",
            "Program Files/Pad Proxy/PadProxy.exe Program Files/Pad Proxy/xproxy.exe",
            "Program Files/Pad Proxy/PadProxy.exe");
        row("top of the drive", "a.exe A/b.exe", "a.exe A/b.exe");
        row("nothing", "A/uninstall.exe", "");
    }
    void likelyPrograms() {
        QFETCH(QString, files);
        QStringList paths;
        const QRegularExpression start("(?<=exe) ");
        for (const QString& file : files.split(start, Qt::SkipEmptyParts))
            paths += "/b/drive_c/" + file;
        QString found = FoundPrograms::likely("/b", paths).join(' ');
        QTEST(found.remove("/b/drive_c/"), "likely");
        paths.clear();
        for (int i = 0; i < 30; ++i)
            paths += QString("/b/drive_c/%1/a.exe").arg(i);
        QCOMPARE(FoundPrograms::likely("/b", paths).size(), FoundPrograms::MaximumLikely);
    }
};

QTEST_GUILESS_MAIN(BottleUseTest)
#include "BottleUseTest.moc"
