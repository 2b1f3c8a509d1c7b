#include <algorithm>

#include "bottleservice/wine/Processes.h"
#include "bottleservice/wine/RunOwners.h"
#include "bottleservice/wine/Runners.h"
#include "bottleservice/wine/RunningPrograms.h"
#include "bottleservice/wine/WineEnvironment.h"
#include "support/Table.h"
#include "support/TestHome.h"

using TestSupport::Table;
using TestSupport::TestHome;

/// Processes and runners on made-up directories.
class WineProcessesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void environment_data() {
        const Table<QByteArray, QByteArray> row("block", "prefix");
        row("no end, value with =", "WINEPREFIX=/p=q", "/p=q");
        row("only a suffix", QByteArray("XWINEPREFIX=/p\0", 15), "");
        row("first wins", QByteArray("WINEPREFIX=/1\0WINEPREFIX=/2\0", 28), "/1");
    }
    void environment() {
        QFETCH(QByteArray, block);
        QTEST(Processes::parseEnvironment(block).value("WINEPREFIX"), "prefix");
    }

    void findsProcessesOfABottle() {
        const TestHome home;
        const QString bottle = home.path() + "/bottle";
        const QString alias = home.path() + "/alias";
        QVERIFY(QDir().mkdir(bottle) && QFile::link(bottle, alias));
        const auto prefixed = [](const QString& path) { return "WINEPREFIX=" + path.toUtf8() + '\0'; };
        const QByteArray plain = prefixed(bottle);
        const QByteArray program = plain + "_CXB_WINE_PROGRAM_UUID=id" + '\0';
        const QString preloader = "/usr/lib/wine/wine64-preloader.static";
        const auto windows = [](const char* name) {
            return QByteArray("C:\\windows\\system32\\") + name + '\0';
        };
        const auto add = [&home](int pid, const QString& exe, const QByteArray& environ,
                                 const QByteArray& command) {
            const QString directory = QString("proc/%1/").arg(pid);
            home.write(directory + "environ", environ);
            home.write(directory + "cmdline", command);
            QFile::link(exe, home.path() + '/' + directory + "exe");
        };
        add(10, preloader, program, QByteArray("Z:\\game.exe\0-x\0", 15));
        add(11, preloader + " (deleted)", plain, windows("notepad.exe"));
        add(12, "/usr/lib/wine/wineserver64", program, "wineserver");
        add(13, preloader, program, windows("services.exe"));
        add(14, preloader, program, windows("explorer.exe") + QByteArray("/desktop\0", 9));
        add(15, preloader, program, windows("explorer.exe"));
        add(16, preloader, prefixed(bottle + "2"), windows("notepad.exe"));
        add(17, "/bin/bash", program, "bash");
        add(18, "/usr/lib/firefox/firefox", program, "firefox");
        add(19, preloader, prefixed(alias + "/"), windows("notepad.exe"));
        add(1, preloader, program, "init");
        QDir().mkdir(home.path() + "/proc/20");

        const Processes processes(home.path() + "/proc");
        const auto pids = [](const std::vector<Processes::Entry>& entries) {
            QList<int> list;
            for (const Processes::Entry& entry : entries)
                list += entry.pid;
            std::sort(list.begin(), list.end());
            return list;
        };
        QCOMPARE(pids(processes.ofBottle(bottle)), QList<int>({10, 11, 12, 13, 14, 15, 19}));
        QCOMPARE(pids(processes.ofBottle(bottle, Processes::Kind::Any)),
                 QList<int>({10, 11, 12, 13, 14, 15, 17, 18, 19}));
        QCOMPARE(pids(processes.ofProgram(bottle, "id")), QList<int>({10, 15}));
        QCOMPARE(pids(processes.ofProgram(bottle, "")), QList<int>({11, 19}));
    }

    void programNames_data() {
        const Table<QByteArray, QByteArray, QString, QString> row("command", "id", "starting", "expected");
        const QByteArray game("C:\\Games\\Game.exe");
        row("by path", game, "", "", "Harbour");
        row("by id", "Z:\\x\\helper.exe", "7b1b", "", "Harbour");
        row("behind the loader", QByteArray("/usr/bin/wine64\0C:\\a.exe", 24), "", "", "a.exe");
        row("before there is a path", "/usr/bin/wine64", "", "", "wine64-preloader");
        row("Wine's own", "C:\\windows\\system32\\plugplay.exe", "7b1b", "", "");
        row("desktop", QByteArray("C:\\windows\\explorer.exe\0/desktop", 32), "", "", "");
        row("being started", "", "", "7b1b new.exe", "wine64-preloader Harbour new.exe");
        row("started", "Z:\\x\\Other.exe", "", "other.exe", "Other.exe");
    }
    void programNames() {
        QFETCH(QByteArray, command);
        QFETCH(QByteArray, id);
        QFETCH(QString, starting);
        const QJsonObject programs{
            {"7b1b", QJsonObject{{"name", "Harbour"}, {"path", "c:\\games\\game.exe"}}}};
        const Processes::Entry process{1, "wine64-preloader", command, "/p", id};
        const QStringList names =
            RunningPrograms::names({process, process}, starting.split(' ', Qt::SkipEmptyParts), programs);
        QFETCH(QString, expected);
        QStringList wanted = expected.split(' ', Qt::SkipEmptyParts);
        wanted.sort(Qt::CaseInsensitive);
        QCOMPARE(names, wanted);
    }

    void owners_data() {
        const Table<QByteArray, QByteArray, QByteArray, QString> row("command", "id", "file", "owners");
        row("by mark", "C:\\windows\\system32\\notepad.exe", "game", "", "game");
        row("by executable", "c:\\games\\GAME.exe\0-x", "", "", "game");
        row("by Unix path", "@/drive_c/Games/Game.exe", "", "", "game");
        row("by the file that was started", "C:\\unpacked.exe", "", "@/setup.exe", "setup");
        row("one program started by another", "C:\\Games\\Tool.exe", "game", "", "game tool");
        row("same file, other arguments", "C:\\Games\\Tool.exe", "safe", "", "safe");
        row("of several with one file the plain one", "C:\\Games\\Tool.exe", "", "", "tool");
        row("mark of a program that is gone", "C:\\Games\\Tool.exe", "old", "", "tool");
        row("not entered", "C:\\Games\\none.exe", "", "@/none.exe", "");
        row("Wine's helper", "C:\\windows\\system32\\conhost.exe", "game", "", "");
    }
    void owners() {
        const TestHome home;
        for (const char* file : {"drive_c/Games/Game.exe", "drive_c/Games/Tool.exe", "setup.exe"})
            home.write(file, "x");
        QVERIFY(QDir(home.path()).mkpath("dosdevices") &&
                QFile::link(home.path() + "/drive_c", home.path() + "/dosdevices/c:"));
        const auto program = [](const QString& path, const QString& arguments = {}) {
            return QJsonObject{{"path", path}, {"arguments", arguments}};
        };
        const RunOwners owners(home.path(), {{"game", program("C:\\Games\\Game.exe")},
                                             {"safe", program("C:\\Games\\Tool.exe", "--safe")},
                                             {"setup", program(home.path() + "/setup.exe")},
                                             {"tool", program("C:\\Games\\Tool.exe")}});
        QFETCH(QByteArray, command);
        QFETCH(QByteArray, id);
        QFETCH(QByteArray, file);
        const QByteArray here = home.path().toUtf8();
        const Processes::Entry process{1,  "wine64-preloader",     command.replace('@', here), here,
                                       id, file.replace('@', here)};
        QStringList found = owners.of(process);
        found.sort();
        QTEST(found.join(' '), "owners");
        QCOMPARE(owners.processesOf("game", {process}).size(),
                 size_t(found.contains("game") || id == "game"));
    }

    void awaitsTheEndOfPrograms() {
        // Between two programs, one of which starts the other, there is a moment without any.
        QVector<QStringList> looks{{}, {"a.exe"}, {}, {}, {}};
        QVector<QStringList> answers;
        RunningPrograms::await(
            this, RunningPrograms::GraceMs,
            [&looks] { return looks.isEmpty() ? QStringList{"too late"} : looks.takeFirst(); },
            [&answers](const QStringList& running) { answers += running; });
        QTRY_COMPARE(answers, QVector<QStringList>{QStringList()});
        QVERIFY(looks.isEmpty());
    }

    void runners() {
        const TestHome home;
        TestSupport::EnvironmentGuard guard;
        for (const char* file : {"runners/own/bin/wine", "runners/own/bin/wineserver", "path/wine",
                                 "opt/bin/wine", "runners/ge-proton9/files/bin/wine64"})
            QFile::setPermissions(home.write(file, ""), QFile::ReadOwner | QFile::ExeOwner);
        QDir().mkpath(home.path() + "/runners/empty/bin");
        guard.set("PATH", QFile::encodeName(home.path() + "/path"));
        const Runners runners(home.path(), home.path() + "/opt");
        QStringList names = runners.names();
        names.sort();
        QCOMPARE(names, QStringList({"ge-proton9", Runners::StagingName, Runners::DefaultName, "own"}));
        QCOMPARE(runners.find("own")->wineserver, home.path() + "/runners/own/bin/wineserver");
        QCOMPARE(runners.find(Runners::DefaultName)->wine, home.path() + "/path/wine");
        QCOMPARE(runners.find(Runners::StagingName)->wine, home.path() + "/opt/bin/wine");
        for (const char* name : {"", "empty", "..", ".", "../runners/own", "missing"})
            QVERIFY2(!runners.find(name), name);
        guard.set("PATH", "/nonexistent");
        QVERIFY(!runners.find(Runners::DefaultName));
        // One of the user's own takes precedence.
        const QString staging = home.write(QString("runners/%1/bin/wine").arg(Runners::StagingName), "");
        QFile::setPermissions(staging, QFile::ReadOwner | QFile::ExeOwner);
        QCOMPARE(runners.find(Runners::StagingName)->wine, staging);
        QCOMPARE(runners.names().count(Runners::StagingName), 1);
    }

    void runs32Bit() {
        const TestSupport::TestHome home;
        // 32-bit programs: Debian's 64-bit package has one library for them, the new manner no 32-bit code of
        // the machine, the old one the machine's.
        const QString old = home.write("old/bin/wine", "");
        for (const char* file : {"zlib1.dll", "kernel32.dll", "ntdll.dll"}) {
            QVERIFY(!Runners::runs32Bit(old));
            home.write(QString("old/lib/wine/i386-windows/") + file, "");
        }
        QVERIFY(Runners::runs32Bit(old, "/nowhere"));
        home.write("old/lib/wine/i386-unix/ntdll.so", "");
        QVERIFY(Runners::runs32Bit(old, old) && !Runners::runs32Bit(old, "/nowhere"));
    }

    void version() {
        QCOMPARE(Runners::parseVersion("wine-8.0 (Debian 8.0~repack-4)\n"), QString("8.0"));
        QCOMPARE(Runners::parseVersion("it looks like wine32 is missing\nwine-8.0 (x)\n"), QString("8.0"));
        QCOMPARE(Runners::parseVersion("something else\nmore"), QString("something else"));
        QCOMPARE(Runners::parseVersion(""), QString());
    }

    void localeIsUtf8_data() {
        const Table<QString, QString> row("variables", "locale");
        row("UTF-8", "LANG=C.UTF-8", "LANG=C.UTF-8");
        row("none", "", "LC_CTYPE=C.UTF-8");
        row("not installed", "LANG=xx_YY.UTF-8", "LANG=xx_YY.UTF-8 LC_CTYPE=C.UTF-8");
        row("all categories", "LANG=C.UTF-8 LC_ALL=C LC_TIME=C.UTF-8",
            "LANG=C.UTF-8 LC_ADDRESS=C LC_COLLATE=C LC_CTYPE=C.UTF-8 LC_IDENTIFICATION=C LC_MEASUREMENT=C "
            "LC_MESSAGES=C LC_MONETARY=C LC_NAME=C LC_NUMERIC=C LC_PAPER=C LC_TELEPHONE=C LC_TIME=C");
    }
    void localeIsUtf8() {
        QFETCH(QString, variables);
        QProcessEnvironment base;
        base.insert("WINEPREFIX", "/other");
        base.insert("_CXB_WINE_PROGRAM_UUID", "x");
        for (const QString& variable : variables.split(' ', Qt::SkipEmptyParts))
            base.insert(variable.section('=', 0, 0), variable.section('=', 1));
        QStringList locale = WineEnvironment::forProcess({}, base).toStringList();
        locale.sort();
        QTEST(locale.join(' '), "locale");
    }
};

QTEST_GUILESS_MAIN(WineProcessesTest)
#include "WineProcessesTest.moc"
