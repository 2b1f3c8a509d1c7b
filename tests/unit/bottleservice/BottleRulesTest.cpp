#include <sys/stat.h>

#include <QJsonArray>
#include <QJsonDocument>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/bottles/BottleStore.h"
#include "bottleservice/bottles/Emulators.h"
#include "bottleservice/bottles/Programs.h"
#include "bottleservice/bottles/PublicBottles.h"
#include "bottleservice/bottles/WindowsCommandLine.h"
#include "bottleservice/bottles/WindowsPath.h"
#include "bottleservice/files/AtomicFile.h"
#include "bottleservice/wine/DetachedCommand.h"
#include "bottleservice/wine/LaunchData.h"
#include "support/Table.h"
#include "support/TestHome.h"

using TestSupport::Table;
using TestSupport::TestHome;

namespace {

const char Id[] = "7b1b4b1e-0000-4000-8000-000000000001";

QJsonObject object(const char* json) {
    const QJsonDocument document = QJsonDocument::fromJson(json);
    Q_ASSERT(document.isObject());
    return document.object();
}

}  // namespace

/// The rules that are plain functions: names, records, tables, command lines, paths.
class BottleRulesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void names() {
        const auto isAllowed = [](const QString& name) { return BottleName::check(name).isEmpty(); };
        for (const char* name : {"setup.exed41d8cd98f00b204e9800998ecf8427e", "public/office", "...",
                                 "安装 \"a\" 'b' `c` $(d); & | ~ \\ 😀", ".hidden.exe123"})
            QVERIFY2(isAllowed(name), name);
        for (const char* name :
             {"", ".", "..", "public", "public/", "public/..", "public/.", "public/a/b", "public//a", "/etc",
              "a/b", "../a", "a\nb", ".creating-1", "public/.deleting-1"})
            QVERIFY2(!isAllowed(name), name);
        for (const int bad : {0, 0x7f, 0x85, 0x2028, 0xd800})
            QVERIFY2(!isAllowed(QString("a") + QChar(bad) + "b"), qPrintable(QString::number(bad)));
        QVERIFY(isAllowed(QString(255, 'a')) && !isAllowed(QString(256, 'a')));
        QVERIFY(!isAllowed(QString(86, QChar(0x4e2d))));
    }

    void storeOnlyKnowsRealBottles() {
        const TestHome home;
        const BottleStore store(home.path());
        const QString root = store.root();
        for (const char* file : {"bottles/b/bottle.yml", "bottles/a/bottle.yml",
                                 "bottles/public/p/bottle.yml", "bottles/.creating-1/bottle.yml",
                                 "bottles/nothing/drive_c/file", "bottles/file", "outside/bottle.yml"})
            home.write(file, "x");
        QFile::link(home.path() + "/outside", root + "/linked");
        QDir().mkpath(root + "/linkedfile");
        QFile::link(home.path() + "/outside/bottle.yml", root + "/linkedfile/bottle.yml");
        QDir().mkpath(root + "/folder/bottle.yml");
        QDir().mkpath(root + "/pipe");
        QCOMPARE(::mkfifo(qPrintable(root + "/pipe/bottle.yml"), 0600), 0);

        QCOMPARE(store.names(), QStringList({"a", "b", "folder", "linkedfile", "pipe", "public/p"}));
        QVERIFY(store.state("missing") == BottleStore::State::Missing);
        for (const char* foreign : {"nothing", "file", "linked"})
            QVERIFY2(store.state(foreign) == BottleStore::State::Foreign, foreign);
        QString error;
        for (const char* damaged : {"folder", "linkedfile", "pipe"})
            QVERIFY2(
                store.check(damaged).isEmpty() && !store.load(damaged, &error) && error.contains("damaged"),
                damaged);
        QVERIFY(!AtomicFile::replace(root + "/linkedfile/bottle.yml", "gone", &error));
        QVERIFY(error.contains("link"));

        QVERIFY(QFile::rename(root + "/public", home.path() + "/elsewhere"));
        QFile::link(home.path() + "/elsewhere", root + "/public");
        QVERIFY(store.state("public/p") == BottleStore::State::Foreign);
        QVERIFY(!store.names().contains("public/p"));
    }

    void record_data() {
        const Table<QString, bool> row("json", "valid");
        const QString with = QString(R"({"id":"%1",%2})").arg(Id);
        row("unknown key", with.arg(R"("own":[1,{}])"), true);
        row("empty text", "", false);
        row("no id", R"({"name":"n"})", false);
        row("id is a path", R"({"id":"../../x"})", false);
        row("id with braces", QString(R"({"id":"{%1}"})").arg(Id), false);
        row("name is a number", with.arg(R"("name":1)"), false);
        row("null character", with.arg(R"("path":"a\u0000b")"), false);
        row("env value is a number", with.arg(R"("envs":{"A":1})"), false);
        row("env name with =", with.arg(R"("envs":{"A=B":"1"})"), false);
        row("too large", with.arg("\"name\":\"" + QString(1100000, 'x') + "\""), false);
    }
    void record() {
        QFETCH(QString, json);
        QFETCH(bool, valid);
        QString error;
        QCOMPARE(Programs::parse(json, &error).isEmpty(), !valid);
        QCOMPARE(error.isEmpty(), valid);
    }

    void mergeKeepsWhatIsNotGiven() {
        const QJsonObject old = object(
            R"({"id":"1","name":"n","path":"p","stars":2,"envs":{"A":"1","B":"2"},"own":7,"auto_discovered":true})");
        QCOMPARE(Programs::merged(old, object(R"({"id":"1","stars":5})")),
                 object(R"({"id":"1","name":"n","path":"p","stars":5,"envs":{"A":"1","B":"2"},"own":7})"));
        QCOMPARE(
            Programs::merged(old, object(R"({"envs":{"B":"3"},"arguments":""})")),
            object(R"({"id":"1","name":"n","path":"p","stars":2,"envs":{"B":"3"},"own":7,"arguments":""})"));
    }

    void newProgramIsCompleted() {
        QString error;
        const QDateTime now(QDate(2024, 2, 3), QTime(4, 5, 6));
        const auto completed = [&](const char* json) {
            return Programs::completed(object(json), now, &error);
        };
        QCOMPARE(
            completed(R"({"id":"1","path":"C:\\Games\\My.Game.exe"})"),
            object(
                R"({"id":"1","path":"C:\\Games\\My.Game.exe","name":"My.Game","folder":"C:\\Games","icon":"",
                       "arguments":"","envs":{},"stars":0,"created_time":"2024-02-03 04:05:06"})"));
        QCOMPARE(completed(R"({"id":"1","path":"/opt/x/a.exe"})")["folder"].toString(), QString("/opt/x"));
        QVERIFY(completed(R"({"id":"1","stars":3})").isEmpty());
        QVERIFY(!error.isEmpty());
    }

    void publicBottle_data() {
        const Table<QByteArray, QString> row("table", "bottle");
        row("md5", R"([{"bottle":"public/a","md5sum":["x","ABC"]}])", "public/a");
        row("wildcard is anchored", R"([{"bottle":"public/a","filename":["setup"]}])", "");
        row("no expression", R"([{"bottle":"public/a","filename":[".*"]}])", "");
        row("inspection", R"([{"bottle":"public/a","peinfo":{"brief":"PE32*windows/x","console":"false"}}])",
            "public/a");
        row("all must hold", R"([{"bottle":"public/a","md5sum":["abc"],"filename":["other"]}])", "");
        row("first wins",
            R"([{"bottle":"public/a","md5sum":["abc"]},{"bottle":"public/b","md5sum":["abc"]}])", "public/a");
        row("wrong rules are skipped",
            R"([7,{"bottle":"private","md5sum":["abc"]},{"bottle":"public/../x","md5sum":["abc"]},{"bottle":"public/n"},
                {"bottle":"public/e","md5sum":[]},{"bottle":"public/o","peinfo":{}},{"bottle":"public/g","md5sum":["abc"]}])",
            "public/g");
    }
    void publicBottle() {
        QFETCH(QByteArray, table);
        const QJsonObject query = object(R"({"filename":"My Setup1.exe","md5sum":"abc",
            "peinfo":{"brief":"PE32 executable\nwindows/x","console":false}})");
        QTEST(PublicBottles::parse(table).bottleFor(query), "bottle");
    }

    void commandLine_data() {
        const Table<QStringList> row("arguments");
        row("  a \t b  ", {"a", "b"});
        row(R"("C:\Program Files\x.exe" /S)", {R"(C:\Program Files\x.exe)", "/S"});
        row(R"("C:\dir\\" b)", {R"(C:\dir\)", "b"});
        row(R"(a\\\"b c)", {R"(a\"b)", "c"});
        row(R"(a "" b)", {"a", "", "b"});
        row(R"("a""b")", {"a\"b"});
        row("\"open end", {"open end"});
        row("a;b $(c) `d` 'e f'", {"a;b", "$(c)", "`d`", "'e", "f'"});
        row(" ", {});
    }
    void commandLine() { QTEST(WindowsCommandLine::split(QTest::currentDataTag()), "arguments"); }

    void windowsPath() {
        const TestHome home;
        const QString bottle = home.path();
        const QString drive = bottle + "/dosdevices/c:";
        home.write("drive_c/Program Files/App/A.exe", "x");
        QDir().mkpath(bottle + "/dosdevices");
        QFile::link("../drive_c", drive);
        const auto toUnix = [&](const char* path) { return WindowsPath::toUnix(bottle, path); };
        QCOMPARE(toUnix("C:\\program files\\APP\\a.EXE"), drive + "/Program Files/App/A.exe");
        QCOMPARE(toUnix("c:/Program Files/none/b.exe"), drive + "/Program Files/none/b.exe");
        QCOMPARE(toUnix("D:"), bottle + "/dosdevices/d:");
        for (const char* foreign : {"/usr/x.exe", "1:\\x", "C:x"})
            QCOMPARE(toUnix(foreign), QString(foreign));
        const QJsonObject program = object(R"({"id":"1","path":"c:\\PROGRAM files\\app\\a.exe"})");
        QCOMPARE(Programs::summary("b", bottle, program)["size"], QJsonValue("1 bytes"));
    }

    void launchData() {
        const QJsonObject record = object(
            R"({"Runner":"r","DLL_Overrides":{"d3d9":"n,b","bad;x":"n","my updater.exe":"","mshtml":"","y":"rm"},
        "Parameters":{"renderer":"vulkan","discrete_gpu":true,"cpu_rendering":true,"ntsync":true},
        "External_Programs":{"1":{"id":"1","name":"n","path":"C:\\a","envs":{"A":"1"},"stars":3,"own":1}}})");
        QCOMPARE(
            LaunchData::render("/b", record, Runner{"r", "/w/wine", "/w/wineserver"}),
            object(
                R"({"version":1,"path":"/b","runner":"r","wine":"/w/wine","wineserver":"/w/wineserver","emulator":"",
        "env":{"WINEPREFIX":"/b","WINEDLLOVERRIDES":"winemenubuilder.exe=;d3d9=n,b;mshtml=","WINE_D3D_CONFIG":"renderer=vulkan",
               "DRI_PRIME":"1","LIBGL_ALWAYS_SOFTWARE":"1","GALLIUM_DRIVER":"llvmpipe",
               "WINENTSYNC":"1","PROTON_USE_NTSYNC":"1"},
        "programs":{"1":{"name":"n","path":"C:\\a","folder":"","arguments":"","envs":{"A":"1"}}}})"));
        QCOMPARE(LaunchData::environment("/b", object(R"({"Parameters":{"renderer":"x,y=z"}})")),
                 object(R"({"WINEPREFIX":"/b","WINEDLLOVERRIDES":"winemenubuilder.exe="})"));
    }

    void emulators() {
        const auto find = [](const QString& name) { return name == "box64" ? "/usr/bin/box64" : QString(); };
        QCOMPARE(Emulators::describe("x86_64", "box64", find), object(R"({"installed":{},"using":""})"));
        QCOMPARE(Emulators::describe("arm64", "exagear", find),
                 object(R"({"installed":{"box64":"/usr/bin/box64"},"using":"box64"})"));
    }

    void logName() {
        QCOMPARE(DetachedCommand::logName("C:\\windows\\regedit.exe"), QString("command-regedit.exe.txt"));
        QCOMPARE(DetachedCommand::logName("../../a b$/.."), QString("command-...txt"));
    }
};

QTEST_GUILESS_MAIN(BottleRulesTest)
#include "BottleRulesTest.moc"
