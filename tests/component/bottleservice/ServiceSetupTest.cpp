#include <QRandomGenerator>
#include <QStandardPaths>
#include <QtTest>

#include "ServiceFixture.h"
#include "bottleservice/wine/Processes.h"
#include "support/HttpServer.h"
#include "support/Table.h"

using TestSupport::readFile;
using TestSupport::Table;

namespace {

const QString Bottle = "program-1";
constexpr int SetupMs = 120000;

/// The rest of a manifest behind what every one needs.
QByteArray manifest(const QByteArray& bottle) {
    return "Name: n\nDebInfo: {wine_cmd: lumora-wine10-stable}\nBottle: {" + bottle + "}\n";
}

const QByteArray Slow = "Commands: [{Program: ping.exe, Arguments: ['-n', '60', '127.0.0.1']}]";

/// Everything that a manifest can say.
const QByteArray Whole = R"(Name: n
DebInfo: {wine_cmd: lumora-wine8-stable}
Bottle:
  Windows: win7
  DXVK: layer
  Parameters: {custom_dpi: 144, renderer: gdi, ntsync: true}
  DLL_Overrides: {"a.dll": "n,b"}
  Font_Replacements: {SimSun: Noto}
  Dependencies: [needy, good]
  Registry:
    - {Key: 'HKCU\Software\Test', Name: text, Data: "a\nb"}
    - {Key: 'HKCU\Software\Test', Name: texts, Type: REG_MULTI_SZ, Data: [one, two]}
    - {Key: 'HKCU\Software\Test', Name: long, Type: REG_QWORD, Data: 0x100000002}
    - {Key: 'HKLM\Software\Test', Type: REG_DWORD, Data: 7}
    - {Key: 'HKCU\Control Panel\Desktop', Name: Wallpaper, Type: delete}
  Files:
    - {Path: 'c:\Game Data\sub\x.ini', Text: "[a]\nb=名\n"}
    - {Path: 'C:\PROGRAM FILES\data.bin', Base64: AAH/}
    - {Path: 'c:\here.exe', Text: ""}
  Commands:
    - {Program: cmd.exe, Arguments: [/c, 'echo said> c:\said.txt'], Description: Says something}
    - {Program: xcopy, Arguments: ['c:\Game Data\sub\x.ini', 'c:\']}
Programs:
  - {name: Here, path: 'C:\here.exe', arguments: -h, envs: {A: "1"}}
  - {name: Later, path: 'C:\later.exe', arguments: -l, envs: {B: "2"}}
)";

}  // namespace

/// Bottles that the real service sets up from manifests, with the machine's Wine.
class ServiceSetupTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ServiceFixture> m_service;
    TestSupport::HttpServer m_server;

    QString path(const QString& inBottle) const { return m_service->bottlePath(Bottle) + '/' + inBottle; }
    const QJsonObject record() const { return m_service->json("get", {Bottle}).object(); }
    bool exists() const { return QFileInfo::exists(path("")); }
    QStringList ends() const {
        return m_service->setupLog.filter(QRegularExpression("^setup(Success|Fail)ed"));
    }
    QJsonObject failure() const {
        const QString text = ends().value(0).section(", ", 1).chopped(1);
        return QJsonDocument::fromJson(text.toUtf8()).object();
    }
    void call(const QByteArray& text, const QString& bottle = Bottle) const {
        const QString base64 = text.toBase64();
        QCOMPARE(m_service->call("setupYaml", {bottle, base64}, "InstallerManager").errorName(), QString());
    }
    void begin(const QByteArray& text, const QString& bottle = Bottle) {
        m_service->setupLog.clear();
        call(text, bottle);
    }
    bool setUp(const QByteArray& text, const QString& bottle = Bottle) {
        begin(text, bottle);
        TestSupport::waitUntil([this] { return !ends().isEmpty(); }, SetupMs);
        return ends() == QStringList("setupSuccessed(" + bottle + ')');
    }
    void deleteBottle(const QString& bottle) const { m_service->call("delete", {bottle}); }
    /// Nothing of the work is left, also no process.
    bool isClean() const {
        const std::vector<Processes::Entry> all = Processes().all();
        const QByteArray bottles = QFile::encodeName(m_service->dataDir() + "/bottles/");
        return !exists() && m_service->unfinished("bottles").isEmpty() &&
               std::none_of(all.begin(), all.end(), [&bottles](const Processes::Entry& entry) {
                   return entry.prefix.startsWith(bottles);
               });
    }
    QString wine(const QStringList& arguments) const {
        const QString prefix = "WINEPREFIX=" + m_service->bottlePath(Bottle);
        return TestSupport::runProcess("wine", arguments, {prefix, "WINEDEBUG=-all", "LC_ALL=C.UTF-8"}, 60000)
            .output;
    }
    QString dump(const QString& bottle, const QString& program) const {
        QJsonObject form{{"bottlesName", bottle}, {"programUuid", program}, {"name", "n"}};
        for (const char* key : {"introduction", "packageSize", "contributor", "category", "contributorEmail"})
            form[key] = "t";
        form["downloadUrl"] = "http://t.example";
        return m_service->text("dumpManifest", {QString(QJsonDocument(form).toJson())});
    }

private Q_SLOTS:
    void initTestCase() {
        if (QStandardPaths::findExecutable("wine").isEmpty())
            QSKIP("wine-is-not-installed");
        m_service = std::make_unique<ServiceFixture>();
        m_server.files = {{"late.tgz", "x"}};
        m_service->write("dxvk/layer/x64/d3d9.dll", "layer");
        const QString address = m_server.address("silent/late.tgz");
        m_service->write("sources.json", R"({"allow_unverified":true,"archives":{"dxvk":{"late":"late.tgz"}},
            "files":{"late.exe":{"addresses":[")" +
                                             m_server.address("silent/late.tgz").toUtf8() +
                                             R"("]},"late.tgz":{"addresses":[")" + address.toUtf8() +
                                             R"("]}}})");
        m_service->write("dependency.json", R"({
            "good":{"recipe":{"steps":[{"override":["made","by it"],"mode":"native"}]}},
            "needy":{"needs":["good"],"recipe":{"steps":[
                {"registry":"HKEY_CURRENT_USER\\Software\\Needy","values":{"a":"b"}}]}},
            "late":{"recipe":{"steps":[{"run":"late.exe","arguments":[]}]}},
            "unknown":{"recipe":{"steps":[{"run":"unknown.exe","arguments":[]}]}}})");
        QVERIFY(m_service->start());
        QVERIFY(m_service->json("createBottles", {"template", ""})["ok"].toBool());
    }
    void cleanup() {
        if (!m_service)
            return;
        deleteBottle(Bottle);
        QTRY_VERIFY_WITH_TIMEOUT(isClean(), 20000);
    }

    void whole() {
        QVERIFY2(setUp(Whole), qPrintable(m_service->setupLog.join('\n')));
        const QJsonObject bottle = record();
        QCOMPARE(bottle["Runner"].toString(), QString("lumora-wine10-stable"));
        QVERIFY(!m_service->setupLog.filter("The Wine \"lumora-wine8-stable\" is not to be had").isEmpty());
        QCOMPARE(bottle["Windows"].toString(), QString("win7"));
        QCOMPARE(bottle["DXVK"].toString(), QString("layer"));
        QCOMPARE(bottle["Parameters"].toObject(), QJsonObject({{"custom_dpi", 144},
                                                               {"renderer", "gdi"},
                                                               {"ntsync", true},
                                                               {"cpu_rendering", false},
                                                               {"discrete_gpu", false},
                                                               {"mem_optimized", false}}));
        QCOMPARE(bottle["DLL_Overrides"].toObject(),
                 QJsonObject({{"a.dll", "n,b"}, {"d3d9", "n"}, {"made", "n"}, {"by it", "n"}}));
        QCOMPARE(bottle["Font_Replacements"].toObject(), QJsonObject({{"SimSun", "Noto"}}));
        QCOMPARE(bottle["Installed_Dependencies"].toArray(), QJsonArray({"good", "needy"}));
        QCOMPARE(readFile(path("drive_c/Game Data/sub/x.ini")), QByteArray("[a]\nb=名\n"));
        QCOMPARE(readFile(path("drive_c/x.ini")), QByteArray("[a]\nb=名\n"));
        QCOMPARE(readFile(path("drive_c/Program Files/data.bin")), QByteArray("\0\1\xff", 3));
        QVERIFY(readFile(path("drive_c/said.txt")).startsWith("said"));
        const QJsonObject programs = bottle["External_Programs"].toObject();
        QCOMPARE(programs.size(), 1);
        QCOMPARE(programs.begin()->toObject()["arguments"].toString(), QString("-h"));
        QTRY_VERIFY(!m_service->signalLog.filter("program_added(program-1").isEmpty());

        QVERIFY(readFile(path("user.reg")).contains("\"by it\"=\"n\""));
        QVERIFY(readFile(path("user.reg")).contains("\"long\"=hex(b):02,00,00,00,01,00,00,00"));
        const QString test = wine({"reg.exe", "query", "HKCU\\Software\\Test"});
        for (const char* data : {"one\\0two", "REG_QWORD", "text"})
            QVERIFY2(test.contains(data), qPrintable(test));
        QVERIFY(wine({"reg.exe", "query", "HKLM\\Software\\Test", "/ve"}).contains("0x7"));
        QVERIFY(wine({"reg.exe", "query", "HKCU\\Software\\Needy"}).contains("b"));
        QVERIFY(
            wine({"reg.exe", "query", "HKCU\\Control Panel\\Desktop", "/v", "LogPixels"}).contains("0x90"));
        QVERIFY(wine({"cmd.exe", "/c", "ver"}).contains("6.1."));

        // The steps in order, none left out.
        QStringList steps = m_service->setupLog.filter("setupProgressChanged");
        steps.replaceInStrings("setupProgressChanged(program-1, ", "");
        QCOMPARE(steps.join(' '), QString("0, 9) 1, 9) 2, 9) 3, 9) 4, 9) 5, 9) 6, 9) 7, 9) 8, 9) 9, 9)"));
        QVERIFY(m_service->setupLog.contains("setupTitleChanged(program-1, Installing needy)"));
        QVERIFY(m_service->setupLog.contains("setupDescriptionChanged(program-1, Says something, 0)"));

        // What comes later gets what the manifest knows of it.
        const QString id = "7b1b4b1e-0000-4000-8000-000000000001";
        m_service->call("updateExternalProgram",
                        {Bottle, QString(R"({"id":"%1","path":"c:\\LATER.exe","name":"x"})").arg(id)});
        QCOMPARE(record()["External_Programs"][id]["envs"].toObject(), QJsonObject({{"B", "2"}}));
        QCOMPARE(record()["External_Programs"][id]["name"].toString(), QString("x"));
        QCOMPARE(record()["Application"].toString(), QString("n"));

        // It has a program now.
        QVERIFY(!setUp(Whole));
        QVERIFY(failure()["error"].toString().endsWith("not replaced: it has programs."));
        QCOMPARE(record()["External_Programs"].toObject().size(), 2);
    }

    void failing_data() {
        const Table<QByteArray, QString> row("text", "error");
        row("YAML", "Name: [", "cannot be used");
        row("unknown key", manifest("Foo: 1"), "Line 3, column 10: \"Foo\" is not a key of Bottle.");
        row("no component", manifest("Dependencies: [good, never]"), "There is no component \"never\".");
        row("no file", manifest("Dependencies: [unknown]"), "unknown.exe");
        row("no layer", manifest("VKD3D: never"), "never");
        row("link", manifest("Files: [{Path: 'c:\\link\\x', Text: a}]"), "leads elsewhere");
        row("folder", manifest("Files: [{Path: 'c:\\users', Text: a}]"), "a folder has its name");
        row("code", manifest("Commands: [{Program: cmd.exe, Arguments: [/c, exit 3]}]"), "ended with code 3");
        row("no program", manifest("Commands: [{Program: 'c:\\none.exe'}]"), "none.exe");
    }
    void failing() {
        QFETCH(QByteArray, text);
        QFETCH(QString, error);
        const QString outside = m_service->home().path() + "/outside";
        QVERIFY(QDir().mkpath(outside));
        // Every bottle is a copy of the template.
        const QString templates = m_service->dataDir() + "/templates";
        const QString link = templates + '/' +
                             QDir(templates).entryList(QDir::Dirs | QDir::NoDotAndDotDot)[0] +
                             "/drive_c/link";
        QFile::link(outside, link);
        QVERIFY(!setUp(text));
        QFile::remove(link);
        QCOMPARE(ends().size(), 1);
        QVERIFY2(failure()["error"].toString().contains(error), qPrintable(ends()[0]));
        QCOMPARE(failure()["ok"], QJsonValue(false));
        QVERIFY2(failure()["reasons"].toArray().at(0).toObject().contains("code"), qPrintable(ends()[0]));
        QVERIFY(QDir(outside).isEmpty());
        QTRY_VERIFY(isClean());
    }

    void wrongArguments() {
        for (const QString& name : {QString("../x"), QString(""), QString("a/b")}) {
            m_service->setupLog.clear();
            call(manifest(""), name);
            QTRY_COMPARE(ends().size(), 1);
            QVERIFY(ends()[0].startsWith("setupFailed(" + name + ", "));
        }
        m_service->setupLog.clear();
        m_service->call("setupYaml", {Bottle, "no base 64!"}, "InstallerManager");
        QTRY_COMPARE(ends().size(), 1);
        QCOMPARE(failure()["error"].toString(), QString("The manifest cannot be used. It is not Base64."));
        m_service->setupLog.clear();
        m_service->call("setupYaml", {Bottle, QString(5 * 1024 * 1024, 'A')}, "InstallerManager");
        QTRY_COMPARE(ends().size(), 1);
        QVERIFY(failure()["error"].toString().endsWith("is too long."));
        QCOMPARE(m_service->call("cancelSetup", {"none"}, "InstallerManager").errorName(), QString());
    }

    /// Neither a native program nor another drive is at hand, also when a command hides what it does.
    void confined() {
        const QString touched = m_service->home().path() + "/touched";
        const QByteArray script =
            manifest("Files: [{Path: 'c:\\x.bat', Text: \"@start %1 /usr/bin/touch " + touched.toUtf8() +
                     "\\n@if exist %2:\\\\etc echo x> c:\\\\seen\\n@exit 0\\n\"}], "
                     "Commands: [{Program: cmd.exe, Arguments: [/c, 'set s=/uni&& set d=z&& call c:\\x.bat "
                     "%s%x %d%']}, {Program: cmd.exe, Arguments: [/c, 'echo y> c:\\ran']}]");
        QVERIFY2(setUp(script), qPrintable(m_service->setupLog.join('\n')));
        QVERIFY(QFile::exists(path("drive_c/ran")));
        QVERIFY(!QFile::exists(path("drive_c/seen")));
        QVERIFY(!QFile::exists(touched));
        QVERIFY(QFileInfo(path("dosdevices/z:")).isSymLink());
    }

    /// A set-up that is cancelled has ended for everybody, also while it waits, and leaves the bottle alone.
    void cancelledBefore() {
        m_service->call("createBottles", {Bottle, ""});
        m_service->callLater("setWindowsVersion", {Bottle, "win7"});  // in front of it in the queue
        begin(manifest(Slow));
        m_service->call("cancelSetup", {Bottle}, "InstallerManager");
        call(manifest("Commands: [{Program: 'c:\\none.exe'}]"));  // fails after the other one
        QTRY_COMPARE_WITH_TIMEOUT(ends().size(), 2, SetupMs);
        QVERIFY(ends()[0].contains("cancelled") && ends()[1].contains("none.exe"));
        QCOMPARE(record()["Windows"].toString(), QString("win7"));
        QVERIFY(!m_service->setupLog.contains("setupDescriptionChanged(program-1, Running ping.exe, 0)"));
    }

    /// Only what is known to hold nothing is replaced.
    void existing() {
        m_service->call("createBottles", {Bottle, ""});
        m_service->call("setDPI", {Bottle, 200});
        QVERIFY2(setUp(manifest("Windows: win81")), qPrintable(m_service->setupLog.join('\n')));
        QCOMPARE(record()["Windows"].toString(), QString("win81"));
        QCOMPARE(record()["Parameters"]["custom_dpi"].toInt(), 96);
        // Also what an earlier set-up has brought is nothing of the user's.
        const QByteArray files =
            manifest("Dependencies: [needy], Files: [{Path: 'c:\\made.txt', Text: made}]");
        QVERIFY2(setUp(files), qPrintable(m_service->setupLog.join('\n')));
        QVERIFY2(setUp(manifest("Windows: win81")), qPrintable(m_service->setupLog.join('\n')));
        QVERIFY(!QFile::exists(path("drive_c/made.txt")));
        QVERIFY(setUp(files));
        m_service->write("bottles/program-1/drive_c/made.txt", "work");
        QVERIFY(!setUp(manifest("Windows: win10")));
        QVERIFY(failure()["error"].toString().endsWith("not replaced: it has files of its own."));
        QCOMPARE(readFile(path("drive_c/made.txt")), QByteArray("work"));
    }

    /// The same request again waits for the same end; another one is refused and changes nothing.
    void repeated() {
        begin(manifest(Slow));
        call(manifest(Slow));
        const QDBusMessage other =
            m_service->call("setupYaml", {Bottle, QString(manifest("").toBase64())}, "InstallerManager");
        QCOMPARE(other.errorName(), QString("com.lumora.Error.Busy"));
        QVERIFY(ends().isEmpty());
        m_service->call("setupYaml", {Bottle, QString(5 * 1024 * 1024, 'A')}, "InstallerManager");
        QVERIFY(ends().isEmpty());
        m_service->call("cancelSetup", {Bottle}, "InstallerManager");
        QTRY_COMPARE(ends().size(), 1);
    }

    void cancelling_data() {
        const Table<QByteArray, QString> row("bottle", "reached");
        row("fetching", "DXVK: late", "setupTitleChanged(program-1, Fetching late)");
        row("copying", Slow, "setupTitleChanged(program-1, Creating the bottle)");
        row("downloading", "Dependencies: [late]",
            "setupDescriptionChanged(program-1, Downloading late.exe, 0)");
        row("settings", "Windows: win7, " + Slow, "setupTitleChanged(program-1, Applying settings)");
        row("command", Slow, "setupDescriptionChanged(program-1, Running ping.exe, 0)");
    }
    void cancelling() {
        QFETCH(QByteArray, bottle);
        QFETCH(QString, reached);
        begin(manifest(bottle));
        QTRY_VERIFY_WITH_TIMEOUT(m_service->setupLog.contains(reached), SetupMs);
        m_service->call("cancelSetup", {Bottle}, "InstallerManager");
        QTRY_COMPARE_WITH_TIMEOUT(ends().size(), 1, 20000);
        QCOMPARE(failure()["cancelled"], QJsonValue(true));
        QTRY_VERIFY_WITH_TIMEOUT(isClean(), 20000);
    }

    void deleting() {
        begin(manifest(Slow));
        QTRY_VERIFY_WITH_TIMEOUT(!m_service->setupLog.filter("Running ping").isEmpty(), SetupMs);
        QCOMPARE(m_service->errorName("delete", {Bottle}), QString("NoSuchBottle"));
        QTRY_COMPARE(ends().size(), 1);
    }

    /// At whatever moment the service is killed, the bottle is whole or not there.
    void killed() {
        const int wanted = qEnvironmentVariableIntValue("CELLARIX_FAULT_ROUNDS");
        const quint32 seed = wanted > 0 ? QRandomGenerator::global()->generate() : 7;
        qInfo() << "seed" << seed;
        QRandomGenerator random(seed);
        for (int round = 0; round < (wanted > 0 ? wanted : 3); ++round) {
            const int moment = random.bounded(28);
            begin(Whole);
            // Spins until so many signals have come, then as many turns more.
            TestSupport::waitUntil([&] { return m_service->setupLog.size() > moment || !ends().isEmpty(); },
                                   SetupMs);
            m_service->kill();
            const bool isWhole = exists();
            QVERIFY(m_service->start());
            QTRY_VERIFY_WITH_TIMEOUT(m_service->unfinished("bottles").isEmpty(), 20000);
            QCOMPARE(exists(), isWhole);
            if (isWhole) {
                QCOMPARE(record()["Installed_Dependencies"].toArray().size(), 2);
                QVERIFY(QFile::exists(path("drive_c/x.ini")));
                deleteBottle(Bottle);
            }
            QTRY_VERIFY_WITH_TIMEOUT(isClean(), 20000);
        }
    }

    /// A bottle that was changed in any way comes back from its own manifest as it was.
    void dumpedAndSetUp() {
        const int wanted = qEnvironmentVariableIntValue("CELLARIX_FAULT_ROUNDS");
        for (quint32 seed = 1; seed <= quint32(wanted > 0 ? wanted : 1); ++seed) {
            qInfo() << "seed" << seed;
            QRandomGenerator random(seed);
            const auto pick = [&random](const QVariantList& from) {
                return from[random.bounded(from.size())];
            };
            QVERIFY(m_service->json("createBottles", {"source", ""})["ok"].toBool());
            const QList<std::function<QDBusMessage()>> changes = {
                [&] {
                    return m_service->call("setDPI", {"source", 96 + random.bounded(385)});
                },
                [&] {
                    return m_service->call("setWindowsVersion", {"source", pick({"win7", "winxp", "win11"})});
                },
                [&] {
                    return m_service->call("setD3dRenderer", {"source", pick({"gl", "vulkan", "gdi"})});
                },
                [&] {
                    return m_service->call("setCpuRendering", {"source", pick({true, false})});
                },
                [&] {
                    return m_service->call("setDiscreteGpu", {"source", pick({true, false})});
                },
                [&] {
                    return m_service->call("setMemOptimized", {"source", pick({true, false})});
                },
                [&] {
                    return m_service->call("setNTSync", {"source", pick({true, false})});
                },
                [&] {
                    return m_service->call(
                        "updateDllOverride",
                        {"source", pick({"null", "*x", "My Game.exe", "数"}), pick({"n", "b,n", ""}), false});
                },
                [&] {
                    return m_service->call(
                        "addFontReplacements",
                        {"source", pick({"A \"b\\c\"", "宋体", "~"}), pick({"x", "- a: b", "#"})});
                },
                [&] {
                    return m_service->call("setDxvk", {"source", "layer", true});
                },
                [&] {
                    return m_service->call("installDependency", {"source", pick({"good", "needy"})});
                },
            };
            for (int i = 0; i < 14; ++i)
                QCOMPARE(changes[random.bounded(changes.size())]().errorMessage(), QString());
            const QString id = "7b1b4b1e-0000-4000-8000-000000000001";
            const QJsonObject program{{"id", id},
                                      {"path", "C:\\windows\\notepad.exe"},
                                      {"name", pick({"1.10", "名", "a: b"}).toString()},
                                      {"arguments", pick({"", "\"a b\" \\ %1", "-x"}).toString()},
                                      {"envs", QJsonObject{{"A", pick({"", "no", "x=y"}).toString()}}}};
            QCOMPARE(m_service->error("updateExternalProgram",
                                      {"source", QString(QJsonDocument(program).toJson())}),
                     QString());
            const QString source = dump("source", id);
            const QByteArray text = readFile(source);
            QVERIFY2(!text.isEmpty(), qPrintable(source));
            QVERIFY2(setUp(text), qPrintable(m_service->setupLog.join('\n') + text));
            const QString copied = record()["External_Programs"].toObject().keys().value(0);
            QCOMPARE(readFile(dump(Bottle, copied)), text);
            deleteBottle(Bottle);
            deleteBottle("source");
        }
    }
};

QTEST_GUILESS_MAIN(ServiceSetupTest)
#include "ServiceSetupTest.moc"
