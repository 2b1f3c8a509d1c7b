#include <QCryptographicHash>
#include <QtTest>

#include "ServiceFixture.h"
#include "support/HttpServer.h"
#include "support/Table.h"

using TestSupport::readFile;
using TestSupport::Table;

namespace {

const QString Bottle = "real";

/// Does what installers do, as they are told by their arguments.
const QByteArray Wine = readFile(TEST_SOURCE_DIR "/tests/data/service/wine.sh");

}  // namespace

/// Components of the machine and of bottles through the real service, with a Wine whose installers do as they
/// are told.
class ServiceComponentsTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ServiceFixture> m_service;
    TestSupport::HttpServer m_server;

    QString path(const QString& inBottle) const { return m_service->bottlePath(Bottle) + '/' + inBottle; }
    QJsonDocument record() const { return m_service->json("get", {Bottle}); }
    QString install(const QString& name) const {
        return m_service->error("installDependency", {Bottle, name});
    }
    /// What the last installer has done.
    QByteArray state() const {
        return readFile(path("drive_c/windows/system32/old.dll")).trimmed() +
               readFile(path("drive_c/windows/system32/made.dll")).trimmed() +
               readFile(path("system.reg")).trimmed();
    }
    QStringList told(const QString& signal) const { return m_service->signalLog.filter(signal); }
    QJsonObject source(const QString& path, const QByteArray& content) const {
        const QByteArray sum = QCryptographicHash::hash(content, QCryptographicHash::Sha256).toHex();
        return {{"addresses", QJsonArray{m_server.address(path)}}, {"sha256", QString(sum)}};
    }
    void writeSources(const QJsonObject& sources) const {
        m_service->write("sources.json", QJsonDocument(sources).toJson());
    }

private Q_SLOTS:
    void init() {
        m_service = std::make_unique<ServiceFixture>();
        m_service->write("runners/stand-in/bin/wine", Wine, true);
        // Is told to end what runs only when new launches already wait.
        m_service->write(
            "runners/stand-in/bin/wineserver",
            "#!/bin/sh\n[ \"$1\" != -k ] || [ -e \"$WINEPREFIX/.before-install/journal.json\" ] || "
            "echo stop >> \"$WINEPREFIX/unannounced\"\n",
            true);
        // It asks for one Gecko, and has nothing for programs of 32 bits.
        const QString windows = "runners/stand-in/lib/wine/x86_64-windows/";
        const QString gecko = "..wine-gecko-9.9-x86_64.msi";
        m_service->write(windows + "kernel32.dll", "k");
        m_service->write(windows + "appwiz.cpl",
                         QByteArray(reinterpret_cast<const char*>(gecko.utf16()), gecko.size() * 2));
        m_service->write("bottles/real/bottle.yml", "Runner: stand-in\nOwn: 1\n");
        m_service->write("bottles/real/drive_c/windows/system32/old.dll", "old");
        m_service->write("bottles/real/system.reg", "old");
        QByteArray pe(0x100, 0);
        pe.replace(0, 2, "MZ").replace(0x3c, 1, "\x80").replace(0x80, 6, QByteArray("PE\0\0\x4c\x01", 6));
        m_service->home().write("pack/setup.exe", "a program");
        const QString pack = m_service->home().path() + "/pack";
        QVERIFY(TestSupport::runProcess("tar", {"-C", pack, "-cf", pack + ".tar", "setup.exe"}).ok());
        m_server.files = {{"setup.exe", "a program"}, {"32.exe", pe}, {"pack.tar", readFile(pack + ".tar")}};
        m_server.requests.clear();
        QJsonObject files;
        for (auto it = m_server.files.begin(); it != m_server.files.end(); ++it)
            files.insert(it.key(), source(it.key(), it.value()));
        files.insert("silent.exe", source("silent/setup.exe", "a program"));
        files.insert("gone.exe", source("gone", "a program"));
        files.insert("unknown.exe", QJsonObject{{"addresses", QJsonArray{"/x"}}});
        QJsonObject proxied = source("setup.exe", "a program");
        proxied["addresses"] = QJsonArray{"http://files.invalid/setup.exe"};
        files.insert("proxied.exe", proxied);
        writeSources(
            {{"files", files}, {"archives", QJsonObject{{"dxvk", QJsonObject{{"late", "silent.exe"}}}}}});
        m_service->write("dependency.json", readFile(TEST_SOURCE_DIR "/tests/data/service/dependency.json"));

        QVERIFY(m_service->start());
    }
    void cleanup() { m_service.reset(); }

    void installing() {
        QCOMPARE(install("needy"), QString());
        QCOMPARE(m_service->text("getInstallingDependency", {Bottle}), "needy");
        // The second waits for the first, which brings it; the third is the first.
        QCOMPARE(install("good"), QString());
        QCOMPARE(install("needy"), QString());
        QTRY_COMPARE(
            told("dependencySetupDone"),
            QStringList(
                {"dependencySetupDone(real, needy, {\"data\":\"[\\\"good\\\",\\\"needy\\\"]\",\"ok\":true})",
                 "dependencySetupDone(real, good, {\"ok\":true})"}));
        QStringList steps = told("StepNotify(real, needy");
        steps.replaceInStrings("dependencySetupStepNotify(real, needy, ", "");
        QCOMPARE(steps.join(' '), "0, 4) 1, 4) 2, 4) 3, 4) 4, 4)");
        QVERIFY(!told("DownloadProgress(real, needy, 9, 9, done)").isEmpty());
        QVERIFY(!told("Description(real, needy, Downloading setup.exe)").isEmpty());
        QCOMPARE(told("StepNotify(real, good").size(), 0);
        QCOMPARE(state(), QByteArray("newnewnew"));
        QVERIFY(!QFile::exists(path("unannounced")));
        QCOMPARE(record()["Installed_Dependencies"].toArray(), QJsonArray({"good", "needy"}));
        QCOMPARE(record()["DLL_Overrides"].toObject(), QJsonObject({{"made", "n"}}));
        QCOMPARE(record()["Own"].toInt(), 1);
        QCOMPARE(m_server.requests, QStringList{"setup.exe@0"});
        QTRY_COMPARE(QDir(path("")).entryList({".before*"}, QDir::AllEntries | QDir::Hidden), QStringList());
        // The size of what was fetched stays known.
        QVERIFY(QFile::remove(m_service->dataDir() + "/downloads/setup.exe"));
        const QDBusMessage facts =
            m_service->call("describe", {Bottle, "dependency", QStringList{"good"}}, "Repair");
        QVERIFY(facts.arguments().value(0).toString().contains(R"("size":9)"));
    }

    /// Programs that are started meanwhile are found before anything is fetched for the next one.
    void busyAfterAnother() {
        install("slow");
        install("gone");
        QTRY_VERIFY(state() == "newnewnew");
        TestSupport::ChildProcess launcher;
        launcher.start("sleep", {"60"});
        QVERIFY(launcher.waitForStarted());
        const QString stat = readFile(QString("/proc/%1/stat").arg(launcher.processId()));
        const QJsonObject start{{"pid", launcher.processId()},
                                {"start", stat.section(") ", -1).section(' ', 19, 19)},
                                {"bottle", Bottle},
                                {"name", "edit.exe"}};
        m_service->write("running/x.start", QJsonDocument(start).toJson());
        m_service->call("cancelInstallingDependency", {Bottle});
        QTRY_COMPARE(told("dependencySetupDone(real, gone").size(), 1);
        QVERIFY(told("dependencySetupDone(real, gone")[0].contains("edit.exe"));
        QCOMPARE(m_server.requests, QStringList{"setup.exe@0"});
    }

    /// Whatever goes wrong, the bottle is what it was, and it is told.
    void failure_data() {
        const Table<QString> row("code");
        row("failing", "installer-code");
        row("gone", "http-status");
        row("unknown", "no-checksum");
        row("never-heard-of", "no-component");
        row("hollow", "not-in-archive");
        row("other", "not-for-this-wine");
        row("narrow", "needs-32-bit");
    }
    void failure() {
        QFETCH(QString, code);
        install(QTest::currentDataTag());
        QTRY_COMPARE(told("dependencySetupDone").size(), 1);
        QVERIFY(told("dependencySetupDone")[0].contains("\"code\":\"" + code + '"'));
        QCOMPARE(state(), QByteArray("oldold"));
        QCOMPARE(record()["Installed_Dependencies"].toArray(), QJsonArray());
        install("good");
        QTRY_VERIFY(!told("Done(real, good, {\"ok\":true})").isEmpty());
        // What runs in a bottle that cannot be backed up goes on.
        QVERIFY(QDir().rename(path("drive_c/windows"), path("drive_c/moved")));
        install("needy");
        QTRY_COMPARE(told("The bottle has no directory").size(), 1);
        QVERIFY(!QFile::exists(path("unannounced")));
    }

    /// A file that the user has got takes the place of one that cannot be fetched: by its content or, where
    /// no checksum is known, by its name. Nothing else is taken.
    void filesByHand() {
        const auto describe = [this](const QStringList& names) {
            const QDBusMessage reply = m_service->call("describe", {Bottle, "dependency", names}, "Repair");
            return QJsonDocument::fromJson(reply.arguments().value(0).toString().toUtf8());
        };
        const auto take = [this](const QString& dependency, const QString& path) {
            const QDBusMessage reply = m_service->call("takeFile", {Bottle, dependency, path}, "Repair");
            const auto result = QJsonDocument::fromJson(reply.arguments().value(0).toString().toUtf8());
            return result["ok"].toBool() ? result["file"].toString()
                                         : result["reasons"][0]["code"].toString();
        };
        const QJsonDocument before = describe({"gone", "unknown", "needy", "packed", "never-heard-of"});
        QCOMPARE(before[0]["available"].toBool(), true);
        QCOMPARE(before[0]["files"][0]["host"].toString(), QString("127.0.0.1"));
        QCOMPARE(before[0]["files"][0]["size"].toInt(), -1);
        QCOMPARE(before[1]["available"].toBool(), false);
        QCOMPARE(before[1]["files"][0]["name"].toString(), QString("unknown.exe"));
        QCOMPARE(before[2]["needs"].toArray(), QJsonArray{"good"});
        QCOMPARE(before[4]["reasons"][0]["code"].toString(), QString("no-component"));
        QVERIFY(m_server.requests.isEmpty());

        const QString half = m_service->write("downloads/.chosen-half", "half a cop");
        m_service->kill();
        QVERIFY(m_service->start() && !QFile::exists(half));
        const auto& home = m_service->home();
        const QString program = home.write("other name.exe", "a program");
        const QString link = home.path() + "/unknown.exe";
        QVERIFY(QFile::link(program, link));
        QCOMPARE(take("unknown", link), QString("no-ordinary-file"));
        QFile huge(home.path() + "/huge");
        QVERIFY(huge.open(QIODevice::WriteOnly) && huge.resize(1LL << 33));  // is not even copied
        QCOMPARE(take("unknown", huge.fileName()), QString("other-file"));
        QCOMPARE(take("unknown", "unknown.exe"), QString("no-ordinary-file"));
        QCOMPARE(take("unknown", program), QString("other-file"));
        QCOMPARE(take("gone", home.write("gone.exe", "another")), QString("other-file"));
        QCOMPARE(take("never-heard-of", program), QString("no-component"));
        QCOMPARE(take("gone", program), QString("gone.exe"));
        QCOMPARE(take("unknown", home.write("x/Unknown.exe", "a program")), QString("unknown.exe"));
        for (const QString name : {"gone", "unknown"}) {
            QCOMPARE(describe({name})[0]["files"][0]["cached"].toBool(), true);
            QCOMPARE(describe({name})[0]["available"].toBool(), true);
            install(name);
            QTRY_COMPARE(told("dependencySetupDone(real, " + name + ", {\"ok\":true})").size(), 1);
        }
        QVERIFY(m_server.requests.isEmpty());
    }

    /// Out of an archive, and only the steps that are for this bottle and its Wine.
    void steps() {
        for (const QString name : {"packed", "addon"}) {
            m_service->write("bottles/real/system.reg", "old");
            install(name);
            QTRY_COMPARE(told("dependencySetupDone(real, " + name),
                         QStringList("dependencySetupDone(real, " + name + ", {\"ok\":true})"));
            QCOMPARE(state(), QByteArray("newnewnew"));
        }
        QVERIFY(!m_server.requests.contains("gone@0"));
    }

    void cancelling_data() {
        QTest::addColumn<QByteArray>("reached");
        QTest::newRow("silent") << QByteArray("oldold");
        QTest::newRow("slow") << QByteArray("newnewnew");
    }
    void cancelling() {
        install(QTest::currentDataTag());
        for (const char* name : {"good", "needy", "needy", "gone", QTest::currentDataTag()})
            install(name);
        QTRY_VERIFY(!m_server.requests.isEmpty());
        QFETCH(QByteArray, reached);
        QTRY_COMPARE(state(), reached);
        // Those that wait are taken back, the first is cancelled, and the other goes on.
        const auto rest = [this](const QString& cancelled) {
            m_service->call("cancelDependency", {Bottle, cancelled}, "Repair");
            const QDBusMessage queue = m_service->call("queuedDependencies", {Bottle}, "Repair");
            return QJsonDocument::fromJson(queue.arguments().value(0).toString().toUtf8()).array();
        };
        const QString first = QTest::currentDataTag();
        QCOMPARE(rest("gone"), QJsonArray({first, "good", "needy"}));
        QCOMPARE(rest("needy"), QJsonArray({first, "good", "needy"}));  // somebody else wants it, too
        QCOMPARE(rest("needy"), QJsonArray({first, "good"}));
        QCOMPARE(rest("never-heard-of"), QJsonArray({first, "good"}));
        QCOMPARE(m_service->error("cancelInstallingDependency", {Bottle}), QString());
        QCOMPARE(rest("never-heard-of"), QJsonArray({first, "good"}));  // somebody else wants it, too
        QCOMPARE(m_service->error("cancelInstallingDependency", {Bottle}), QString());
        QTRY_COMPARE(told("dependencySetupDone").size(), 4);
        QCOMPARE(told("dependencySetupDone").filter("\"ok\":false").size(), 3);
        QCOMPARE(told("dependencySetupDone").last(),
                 QString("dependencySetupDone(real, good, {\"ok\":true})"));
        QCOMPARE(record()["Installed_Dependencies"].toArray(), QJsonArray{"good"});
    }

    void downloadThroughTheProxy() {
        m_service->kill();
        m_service->variables["http_proxy"] = m_server.address("");
        QVERIFY(m_service->start());
        install("proxied");
        QTRY_COMPARE(told("dependencySetupDone").filter("\"ok\":true").size(), 1);
        QCOMPARE(m_server.requests,
                 QStringList{"ttp://files.invalid/setup.exe@0"});  // without the first letter
    }

    /// Of two who want a component for the machine, the last who takes that back ends its download.
    void cancellingForTheMachine() {
        m_service->write("sources.json", QString(R"({"allow_unverified":true,"mirrors":["%1silent"],
            "archives":{"runner":{"late":"late.tgz"}}})")
                                             .arg(m_server.address(""))
                                             .toUtf8());
        QStringList answers;
        for (int i = 0; i < 2; ++i) {
            auto* call = new QDBusPendingCallWatcher(
                m_service->callLater("install", {"runner", "late"}, "Components"), this);
            connect(call, &QDBusPendingCallWatcher::finished, this,
                    [&answers, call] { answers += call->reply().arguments().value(0).toString(); });
        }
        QTRY_VERIFY(!m_server.requests.isEmpty());
        m_service->call("cancelInstall", {"runner", "late"}, "Components");
        m_service->call("list", {}, "Components");
        QVERIFY(answers.isEmpty());
        m_service->call("cancelInstall", {"runner", "late"}, "Components");
        const QString cancelled = R"({"error":"The installation was cancelled.","ok":false,)"
                                  R"("reasons":[{"arguments":[],"code":"cancelled"}]})";
        QTRY_COMPARE(answers, QStringList({cancelled, cancelled}));
        QCOMPARE(told("installed(0, runner, late").size(), 1);
    }

    void killedAndDeleted() {
        install("slow");
        QTRY_VERIFY(state() == "newnewnew");
        m_service->kill();
        QVERIFY(m_service->start());
        QTRY_COMPARE(state(), QByteArray("oldold"));
        // The next one has the bottle for itself, and the end of the bottle ends it.
        install("slow");
        QTRY_VERIFY(state() == "newnewnew");
        QCOMPARE(m_service->error("delete", {Bottle}), QString());
        QVERIFY(!QFile::exists(path("")));
        QTRY_COMPARE(told("dependencySetupDone").filter("\"ok\":false").size(), 1);
    }

    /// No program ends because something is installed; the refusal names them.
    void busy() {
        m_service->write("bottles/real/bottle.yml", R"({Runner: stand-in, External_Programs: {
            a: {id: a, name: Harbour, path: 'C:\game.exe'}}})");
        m_service->call("setDxvk", {Bottle, "late", true});
        TestSupport::ChildProcess game, other, server;
        m_service->startProgram(&game, Bottle, "C:\\Game.exe");
        m_service->startProgram(&other, Bottle, "Z:\\x\\edit.exe");
        m_service->startProgram(&server, Bottle, "C:\\windows\\system32\\services.exe");
        const auto runs = [](const QProcess& process) {
            return QFile::symLinkTarget(QString("/proc/%1/exe").arg(process.processId())).endsWith("/wine64");
        };
        QTRY_VERIFY(runs(game) && runs(other) && runs(server));
        QDBusPendingCall calls[] = {m_service->callLater("installDependency", {Bottle, "good"}),
                                    m_service->callLater("setDxvk", {Bottle, "layer", true}),
                                    m_service->callLater("setRunner", {Bottle, "missing", true})};
        for (QDBusPendingCall& call : calls) {
            call.waitForFinished();
            QCOMPARE(call.error().name(), QString("com.lumora.Error.Busy"));
        }
        const QString result = R"({"busy":["edit.exe","Harbour"],)"
                               R"("error":"Programs run in the bottle: edit.exe, Harbour.","ok":false,)"
                               R"("reasons":[{"arguments":["edit.exe, Harbour","edit.exe","Harbour"],)"
                               R"("code":"busy"}]})";
        QTRY_VERIFY(told("dependencySetupDone").contains("dependencySetupDone(real, good, " + result + ')'));
        QTRY_VERIFY(told("setup_done").contains("component_setup_done(real, dxvk, layer, " + result + ')'));
        QTRY_VERIFY(
            told("setup_done").contains("component_setup_done(real, runner, missing, " + result + ')'));
        // What was asked for before goes on.
        QCOMPARE(m_service->text("getInstallingComponents", {Bottle, "dxvk"}), R"({"late":"DOWNLOADING"})");
        QVERIFY(runs(game) && runs(other) && runs(server));
        QCOMPARE(m_service->error("killWineServer", {Bottle}), QString());
        QCOMPARE(install("good"), QString());
        QTRY_VERIFY(!told("Done(real, good, {\"ok\":true})").isEmpty());
        QCOMPARE(told("waiting").size(), 1);
    }

    /// Whatever came before, also what is still being rolled back, the bottle ends with the last request.
    void lastRequestCounts_data() {
        QTest::addColumn<QStringList>("requests");  // "-x" cancels x
        QTest::addColumn<QString>("expected");
        QTest::newRow("again") << QStringList{"a", "b", "a"} << "a";
        QTest::newRow("cancelled and again") << QStringList{"a", "-a", "a"} << "a";
        QTest::newRow("cancelled") << QStringList{"a", "b", "-b"} << "";
        QTest::newRow("twice") << QStringList{"b", "a", "a"} << "a";
    }
    void lastRequestCounts() {
        QFETCH(QStringList, requests);
        QFETCH(QString, expected);
        for (const char* layer : {"a", "b"})
            m_service->write(QString("dxvk/%1/x32/d3d9.dll").arg(layer), layer);
        install("slow");  // the bottle's turn comes when all have been made
        QTRY_VERIFY(state() == "newnewnew");
        for (const QString& request : requests) {
            if (request.startsWith('-'))
                m_service->call("cancelInstallingComponent", {Bottle, "dxvk", request.mid(1)});
            else
                m_service->call("setDxvk", {Bottle, request, true});
        }
        m_service->call("cancelInstallingDependency", {Bottle});
        QTRY_COMPARE(m_service->text("getInstallingComponents", {Bottle, "dxvk"}), QString("{}"));
        QTRY_COMPARE(told("component_setup_done(real, dxvk, a").size(), 1);
        QCOMPARE(record()["DXVK"].toString(), expected);
        QCOMPARE(readFile(path("drive_c/windows/system32/d3d9.dll")), expected.toUtf8());
    }

    /// Archives come in many layouts; what is installed answers with its own version.
    void layouts_data() {
        const Table<QString, QString> row("entries", "wine");
        row("lumora-wine-staging",
            "w-11-wow64/bin/wine w-11-wow64/lib/wine/i386-windows/ntdll.dll "
            "w-11-wow64/lib/wine/i386-windows/kernel32.dll",
            "/bin/wine");
        row("wine-64-only", "w/bin/wine64 w/README", "/bin/wine64");
        row("ge-proton9", "GE-9/files/bin/wine64 GE-9/files/bin/wine GE-9/files/share/default_pfx/x",
            "/files/bin/wine");
        row("beside-other-files", "LICENSE a/x w/bin/wine", "/bin/wine");
        row("one-deeper", "a/w/bin/wine", "/bin/wine");
        row("no-wine", "w/bin/cider", "");
    }
    void layouts() {
        QFETCH(QString, entries);
        QFETCH(QString, wine);
        const QString name = QTest::currentDataTag();
        const auto& home = m_service->home();
        for (const QString& entry : entries.split(' ')) {
            const QString file = home.write("layout/" + entry, "#!/bin/sh\necho 'wine-11.22 (Staging)'\n");
            QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::ExeOwner));
        }
        // Proton's ready prefix leads to the whole disk.
        if (entries.contains("default_pfx"))
            QVERIFY(QFile::link("/", home.path() + "/layout/GE-9/files/share/default_pfx/z:"));
        const QString archive = home.path() + "/" + name + ".tar.xz";
        QVERIFY(TestSupport::runProcess("tar", {"-C", home.path() + "/layout", "-cJf", archive, "."}).ok());
        m_server.files["w-wow64.tar.xz"] = readFile(archive);
        writeSources({{"files", QJsonObject{{"w-wow64.tar.xz", source("w-wow64.tar.xz", readFile(archive))},
                                            {"unknown.tar", QJsonObject{{"addresses", QJsonArray{"/x"}}}}}},
                      {"archives", QJsonObject{{"runner", QJsonObject{{name, "w-wow64.tar.xz"},
                                                                      {"unknown", "unknown.tar"}}}}}});
        const auto runners = [this](const QString& list) {
            const QString text = m_service->call("list", {}, "Components").arguments().value(0).toString();
            return QJsonDocument::fromJson(text.toUtf8())["runner"][list].toArray();
        };
        const auto runners32 = [this](const QString& list) {
            const QDBusMessage reply = m_service->call("runnersFor32Bit", {}, "Repair");
            return QJsonDocument::fromJson(reply.arguments().value(0).toString().toUtf8())[list].toArray();
        };
        QVERIFY(runners32("supported").contains(name));
        QVERIFY(runners("supported").contains(name) && !runners("supported").contains("unknown"));
        m_service->callLater("install", {"runner", name}, "Components");
        QTRY_COMPARE(told("installed(").size(), 1);
        QCOMPARE(runners("installed").contains(name), !wine.isEmpty());
        QCOMPARE(runners32("installed").contains(name), entries.contains("i386-windows"));
        const QString directory = m_service->dataDir() + "/runners/" + name;
        QCOMPARE(QFile::exists(directory + wine), !wine.isEmpty());
        if (!wine.isEmpty())
            QCOMPARE(m_service->text("getRunnerVersion", {name}), "11.22");
        QVERIFY(!QFile::exists(directory + "/files/share/default_pfx/x"));
    }

    void machineAndBottle() {
        const auto& home = m_service->home();
        for (const char* program : {"wine", "wineserver"}) {
            const QString file = home.write(QString("pack/second-1.0/bin/") + program, Wine);
            QVERIFY(QFile::setPermissions(file, QFile::permissions(file) | QFile::ExeOwner));
        }
        home.write("pack/layer/x32/d3d9.dll", "layer");
        const QString mirror = QFileInfo(home.write("mirror/bad.tgz", "no archive")).path();
        for (const QString name : {"second-1.0", "layer"})
            QVERIFY(TestSupport::runProcess(
                        "tar", {"-C", home.path() + "/pack", "-czf", mirror + '/' + name + ".tgz", name})
                        .ok());
        m_service->write("sources.json",
                         R"({"allow_unverified":true,"mirrors":[")" + mirror.toUtf8() + R"("],"archives":{
            "runner":{"second":"second-1.0.tgz","bad":"bad.tgz"},"dxvk":{"layer":"layer.tgz"}}})");
        const auto install = [this](const QString& kind, const QString& name) {
            return m_service->call("install", {kind, name}, "Components")
                .arguments()
                .value(0)
                .toString()
                .startsWith("{\"ok\":true");
        };
        QVERIFY(!install("runner", "bad") && !install("runner", "../x") && !install("runner", ""));
        QTRY_COMPARE(told("installed(0, runner, ").size(), 3);
        QVERIFY(told("refresh").isEmpty());
        QCOMPARE(m_service->call("install", {"game", "x"}, "Components").errorName(),
                 "com.lumora.Error.InvalidArgs");

        // Fetched on the way, for a bottle.
        m_service->call("setRunner", {Bottle, "second", true});
        QTRY_VERIFY(!told("component_setup_done(real, runner, second, {\"ok\":true})").isEmpty());
        QStringList order = m_service->signalLog.filter("second");
        order.replaceInStrings(QRegularExpression("\\(.*"), "");
        QCOMPARE(order, QStringList({"component_waiting_downloaded", "refresh", "installed",
                                     "component_setup_start", "component_setup_done"}));
        QCOMPARE(record()["Runner"].toString(), "second");
        QCOMPARE(readFile(path("system.reg")), QByteArray("updated\n"));
        QVERIFY(!(QFile::permissions(m_service->dataDir() + "/runners/second/bin/wine") & QFile::WriteOwner));
        QVERIFY(install("runner", "second"));

        const QString dll = path("drive_c/windows/system32/d3d9.dll");
        m_service->call("setDxvk", {Bottle, "layer", true});
        QTRY_COMPARE(record()["DXVK"].toString(), "layer");
        QCOMPARE(readFile(dll), QByteArray("layer"));
        QCOMPARE(record()["DLL_Overrides"].toObject()["d3d9"].toString(), "n");
        m_service->call("setDxvk", {Bottle, "-", true});
        QTRY_COMPARE(record()["DXVK"].toString(), QString());
        QVERIFY(!QFile::exists(dll) && record()["DLL_Overrides"].toObject().isEmpty());
        for (const char* directory : {"runners", "dxvk"})
            QTRY_COMPARE(m_service->unfinished(directory), QStringList());
    }
};

QTEST_GUILESS_MAIN(ServiceComponentsTest)
#include "ServiceComponentsTest.moc"
