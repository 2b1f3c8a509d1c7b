#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QtTest>

#include "bottleservice/bottles/AtomicFile.h"
#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/bottles/BottleStore.h"
#include "bottleservice/bottles/LaunchData.h"
#include "bottleservice/bottles/Programs.h"
#include "bottleservice/bottles/PublicBottles.h"
#include "bottleservice/bottles/WindowsPath.h"
#include "bottleservice/wine/DetachedCommand.h"
#include "bottleservice/wine/Emulators.h"
#include "bottleservice/wine/WindowsCommandLine.h"

namespace {

const char Id[] = "7b1b4b1e-0000-4000-8000-000000000001";

QJsonObject object(const char* json) {
    const QJsonDocument document = QJsonDocument::fromJson(json);
    Q_ASSERT(document.isObject());
    return document.object();
}

void writeFile(const QString& path, const QByteArray& content = "x") {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

}  // namespace

/// The rules that are plain functions: names, records, tables, command lines, paths.
class tst_BottleRules : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void name_data();
    void name();
    void storeOnlyKnowsRealBottles();
    void record_data();
    void record();
    void mergeKeepsWhatIsNotGiven();
    void newProgramIsCompleted();
    void publicBottle_data();
    void publicBottle();
    void commandLine_data();
    void commandLine();
    void windowsPath();
    void launchData();
    void emulators();
    void logName();
};

void tst_BottleRules::name_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("allowed");
    const QString longName = QString(50, QChar(0x4e2d)) + "-" + QString(32, 'f');
    const std::pair<QString, bool> rows[] = {
        {"setup.exed41d8cd98f00b204e9800998ecf8427e", true},
        {"public/office", true},
        {"program-42", true},
        {longName, true},
        {QString::fromUtf8("安装 \"a\" 'b' `c` $(d); & | ~ \\"), true},
        {".hidden.exe123", true},
        {"...", true},
        {QString(255, 'a'), true},
        {QString(256, 'a'), false},
        {QString(86, QChar(0x4e2d)), false},
        {"", false},
        {".", false},
        {"..", false},
        {"public", false},
        {"public/", false},
        {"public/..", false},
        {"public/.", false},
        {"public/a/b", false},
        {"public//a", false},
        {"/etc", false},
        {"a/b", false},
        {"../a", false},
        {"a\nb", false},
        {QString("a") + QChar(0) + "b", false},
        {QString("a") + QChar(0x7f), false},
        {QString("a") + QChar(0x85), false},
        {QString("a") + QChar(0x2028), false},
        {QString("a") + QChar(0xd800), false},
        {".creating-1", false},
        {"public/.deleting-1", false},
    };
    int number = 0;
    for (const auto& [text, allowed] : rows)
        QTest::addRow("%d", number++) << text << allowed;
}

void tst_BottleRules::name() {
    QFETCH(QString, name);
    QFETCH(bool, allowed);
    QCOMPARE(BottleName::check(name).isEmpty(), allowed);
}

void tst_BottleRules::storeOnlyKnowsRealBottles() {
    QTemporaryDir directory;
    const BottleStore store(directory.path());
    const QString root = store.root();
    writeFile(root + "/b/bottle.yml");
    writeFile(root + "/a/bottle.yml");
    writeFile(root + "/public/p/bottle.yml");
    writeFile(root + "/.creating-1/bottle.yml");
    writeFile(root + "/nothing/drive_c/file");
    writeFile(root + "/file");
    writeFile(directory.filePath("outside/bottle.yml"));
    QFile::link(directory.filePath("outside"), root + "/linked");
    QDir().mkpath(root + "/linkedfile");
    QFile::link(directory.filePath("outside/bottle.yml"), root + "/linkedfile/bottle.yml");

    QCOMPARE(store.names(), QStringList({"a", "b", "public/p"}));
    QVERIFY(store.state("missing") == BottleStore::State::Missing);
    for (const char* foreign : {"nothing", "file", "linked", "linkedfile"})
        QVERIFY2(store.state(foreign) == BottleStore::State::Foreign, foreign);
    QString error;
    QVERIFY(!AtomicFile::replace(root + "/linkedfile/bottle.yml", "gone", &error));
    QVERIFY(error.contains("link"));

    QVERIFY(QFile::rename(root + "/public", directory.filePath("elsewhere")));
    QFile::link(directory.filePath("elsewhere"), root + "/public");
    QVERIFY(store.state("public/p") == BottleStore::State::Foreign);
    QCOMPARE(store.names(), QStringList({"a", "b"}));
}

void tst_BottleRules::record_data() {
    QTest::addColumn<QString>("json");
    QTest::addColumn<bool>("valid");
    const QString with = QString("{\"id\":\"%1\",%2}").arg(Id);
    QTest::newRow("minimal") << with.arg("\"name\":\"n\",\"path\":\"C:\\\\a.exe\"") << true;
    QTest::newRow("partial") << with.arg("\"stars\":4") << true;
    QTest::newRow("unknown key") << with.arg("\"own\":[1,{}]") << true;
    QTest::newRow("empty text") << QString() << false;
    QTest::newRow("no object") << "[1]" << false;
    QTest::newRow("torn") << "{\"id\":" << false;
    QTest::newRow("no id") << "{\"name\":\"n\"}" << false;
    QTest::newRow("id is a path") << "{\"id\":\"../../x\"}" << false;
    QTest::newRow("id with braces") << QString("{\"id\":\"{%1}\"}").arg(Id) << false;
    QTest::newRow("id with a line end") << QString("{\"id\":\"%1\\n\"}").arg(Id) << false;
    QTest::newRow("name is a number") << with.arg("\"name\":1") << false;
    QTest::newRow("stars is text") << with.arg("\"stars\":\"4\"") << false;
    QTest::newRow("path is null") << with.arg("\"path\":null") << false;
    QTest::newRow("null character") << with.arg("\"path\":\"a\\u0000b\"") << false;
    QTest::newRow("envs is a list") << with.arg("\"envs\":[]") << false;
    QTest::newRow("env value is a number") << with.arg("\"envs\":{\"A\":1}") << false;
    QTest::newRow("env name with =") << with.arg("\"envs\":{\"A=B\":\"1\"}") << false;
    QTest::newRow("too large") << with.arg("\"name\":\"" + QString(1100000, 'x') + "\"") << false;
}

void tst_BottleRules::record() {
    QFETCH(QString, json);
    QFETCH(bool, valid);
    QString error;
    const QJsonObject record = Programs::parse(json, &error);
    QCOMPARE(record.isEmpty(), !valid);
    QCOMPARE(error.isEmpty(), valid);
}

void tst_BottleRules::mergeKeepsWhatIsNotGiven() {
    const QJsonObject old = object(
        R"({"id":"1","name":"n","path":"p","stars":2,"envs":{"A":"1","B":"2"},"own":7,"auto_discovered":true})");
    QCOMPARE(Programs::merged(old, object(R"({"id":"1","stars":5})")),
             object(R"({"id":"1","name":"n","path":"p","stars":5,"envs":{"A":"1","B":"2"},"own":7})"));
    QCOMPARE(Programs::merged(old, object(R"({"envs":{"B":"3"},"arguments":""})")),
             object(R"({"id":"1","name":"n","path":"p","stars":2,"envs":{"B":"3"},"own":7,"arguments":""})"));
}

void tst_BottleRules::newProgramIsCompleted() {
    QString error;
    const QDateTime now(QDate(2024, 2, 3), QTime(4, 5, 6));
    const QJsonObject record =
        Programs::completed(object(R"({"id":"1","path":"C:\\Games\\My.Game.exe"})"), now, &error);
    QCOMPARE(
        record,
        object(R"({"id":"1","path":"C:\\Games\\My.Game.exe","name":"My.Game","folder":"C:\\Games","icon":"",
                               "arguments":"","envs":{},"stars":0,"created_time":"2024-02-03 04:05:06"})"));
    QCOMPARE(
        Programs::completed(object(R"({"id":"1","path":"/opt/x/a.exe"})"), now, &error)["folder"].toString(),
        QString("/opt/x"));
    QVERIFY(Programs::completed(object(R"({"id":"1","stars":3})"), now, &error).isEmpty());
    QVERIFY(!error.isEmpty());
}

void tst_BottleRules::publicBottle_data() {
    QTest::addColumn<QByteArray>("table");
    QTest::addColumn<QString>("bottle");
    const auto row = [](const char* tag, const char* table, const char* bottle) {
        QTest::newRow(tag) << QByteArray(table) << QString(bottle);
    };
    row("md5", R"([{"bottle":"public/a","md5sum":["x","ABC"]}])", "public/a");
    row("wildcard", R"([{"bottle":"public/a","filename":["*setup?.EXE"]}])", "public/a");
    row("wildcard is anchored", R"([{"bottle":"public/a","filename":["setup"]}])", "");
    row("no expression", R"([{"bottle":"public/a","filename":[".*"]}])", "");
    row("inspection", R"([{"bottle":"public/a","peinfo":{"brief":"PE32*windows/x","console":"false"}}])",
        "public/a");
    row("all must hold", R"([{"bottle":"public/a","md5sum":["abc"],"filename":["other"]}])", "");
    row("first wins", R"([{"bottle":"public/a","md5sum":["abc"]},{"bottle":"public/b","md5sum":["abc"]}])",
        "public/a");
    row("wrong rules are skipped",
        R"([7,{"bottle":"private","md5sum":["abc"]},{"bottle":"public/../x","md5sum":["abc"]},{"bottle":"public/n"},
            {"bottle":"public/e","md5sum":[]},{"bottle":"public/o","peinfo":{}},{"bottle":"public/g","md5sum":["abc"]}])",
        "public/g");
    row("garbage", "{\"bottle\":", "");
    row("empty", "", "");
}

void tst_BottleRules::publicBottle() {
    QFETCH(QByteArray, table);
    QFETCH(QString, bottle);
    const QJsonObject query = object(
        R"({"filename":"My Setup1.exe","md5sum":"abc","peinfo":{"brief":"PE32 executable\nwindows/x","console":false}})");
    QCOMPARE(PublicBottles::parse(table).bottleFor(query), bottle);
}

void tst_BottleRules::commandLine_data() {
    QTest::addColumn<QString>("line");
    QTest::addColumn<QStringList>("arguments");
    const auto row = [](const char* line, const QStringList& arguments) {
        QTest::newRow(line) << QString(line) << arguments;
    };
    row("regedit.exe", {"regedit.exe"});
    row("  a \t b  ", {"a", "b"});
    row("\"C:\\Program Files\\x.exe\" /S", {"C:\\Program Files\\x.exe", "/S"});
    row("\"C:\\dir\\\\\" b", {"C:\\dir\\", "b"});
    row("a\\\\\\\"b c", {"a\\\"b", "c"});
    row("a \"\" b", {"a", "", "b"});
    row("\"a\"\"b\"", {"a\"b"});
    row("\"open end", {"open end"});
    row("a;b $(c) `d` 'e f'", {"a;b", "$(c)", "`d`", "'e", "f'"});
    row("", {});
    row(" ", {});
}

void tst_BottleRules::commandLine() {
    QFETCH(QString, line);
    QFETCH(QStringList, arguments);
    QCOMPARE(WindowsCommandLine::split(line), arguments);
}

void tst_BottleRules::windowsPath() {
    QTemporaryDir directory;
    const QString bottle = directory.path();
    writeFile(bottle + "/drive_c/Program Files/App/A.exe");
    QDir().mkpath(bottle + "/dosdevices");
    QFile::link("../drive_c", bottle + "/dosdevices/c:");
    QCOMPARE(WindowsPath::toUnix(bottle, "C:\\program files\\APP\\a.EXE"),
             bottle + "/dosdevices/c:/Program Files/App/A.exe");
    QCOMPARE(WindowsPath::toUnix(bottle, "c:/Program Files/none/b.exe"),
             bottle + "/dosdevices/c:/Program Files/none/b.exe");
    QCOMPARE(WindowsPath::toUnix(bottle, "/usr/x.exe"), QString("/usr/x.exe"));
    QCOMPARE(WindowsPath::toUnix(bottle, "D:"), bottle + "/dosdevices/d:");
    QVERIFY(!WindowsPath::isWindowsPath("1:\\x"));
    QVERIFY(!WindowsPath::isWindowsPath("C:x"));
    QCOMPARE(Programs::summary("b", bottle,
                               object(R"({"id":"1","path":"c:\\PROGRAM files\\app\\a.exe"})"))["size"],
             QJsonValue("1 bytes"));
}

void tst_BottleRules::launchData() {
    const QJsonObject record =
        object(R"({"Runner":"r","DLL_Overrides":{"d3d9":"n,b","bad;x":"n","mshtml":"","y":"rm"},
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

void tst_BottleRules::emulators() {
    const auto find = [](const QString& name) { return name == "box64" ? "/usr/bin/box64" : QString(); };
    QCOMPARE(Emulators::describe("x86_64", "box64", find), object(R"({"installed":{},"using":""})"));
    QCOMPARE(Emulators::describe("arm64", "exagear", find),
             object(R"({"installed":{"box64":"/usr/bin/box64"},"using":"box64"})"));
}

void tst_BottleRules::logName() {
    QCOMPARE(DetachedCommand::logName("C:\\windows\\regedit.exe"), QString("command-regedit.exe.txt"));
    QCOMPARE(DetachedCommand::logName("../../a b$/.."), QString("command-...txt"));
}

QTEST_GUILESS_MAIN(tst_BottleRules)
#include "tst_bottlerules.moc"
