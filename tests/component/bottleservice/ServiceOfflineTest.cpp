#include <QCryptographicHash>
#include <QtTest>

#include "ServiceFixture.h"
#include "support/HttpServer.h"

using TestSupport::readFile;

namespace {

const QString Bottle = "real", Object = "OfflineDependency";
const QByteArray Wine = readFile(TEST_SOURCE_DIR "/tests/data/service/wine.sh");

/// "needy" needs "good", "onbad" needs "bad", whose installer fails.
const char Components[] = R"({
    "good":{"recipe":{"steps":[{"run":"setup.exe","arguments":["write"]},{"override":["made"],"mode":"native"}]}},
    "needy":{"needs":["good"],"recipe":{"steps":[{"run":"second.exe","arguments":[]}]}},
    "bad":{"recipe":{"steps":[{"run":"setup.exe","arguments":["fail"]}]}},
    "onbad":{"needs":["bad"],"recipe":{"steps":[{"run":"second.exe","arguments":[]}]}},
    "unsigned":{"recipe":{"steps":[{"run":"unsigned.exe","arguments":[]}]}},
    "gone":{"recipe":{"steps":[{"run":"gone.exe","arguments":[]}]}},
    "silent":{"recipe":{"steps":[{"run":"silent.exe","arguments":[]}]}},
    "tricks":{"recipe":{"winetricks":"tricks"}}})";

}  // namespace

/// Components go from one home to another, which has no network, in a file. Two services, one after the
/// other, stand for the two machines.
class ServiceOfflineTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ServiceFixture> m_service;
    TestSupport::HttpServer m_server;
    QTemporaryDir m_stick;

    QString archive(const QString& name = "e.tar") const { return m_stick.path() + '/' + name; }
    QJsonObject source(const QString& path) const {
        const QByteArray sum =
            QCryptographicHash::hash(m_server.files.value(path), QCryptographicHash::Sha256);
        return {{"addresses", QJsonArray{m_server.address(path)}}, {"sha256", QString(sum.toHex())}};
    }
    /// Another machine, which knows the same components.
    void useMachine(bool allowsUnverified, const QJsonObject& otherSources = {}) {
        m_service.reset();
        m_service = std::make_unique<ServiceFixture>();
        m_service->write("runners/stand-in/bin/wine", Wine, true);
        m_service->write("runners/stand-in/bin/wineserver", "#!/bin/sh\n", true);
        m_service->write("runners/stand-in/lib/wine/x86_64-windows/kernel32.dll", "k");
        m_service->write("bottles/real/bottle.yml", "Runner: stand-in\n");
        m_service->write("bottles/real/drive_c/windows/system32/old.dll", "old");
        m_service->write("bottles/real/system.reg", "old");
        m_service->write("dependency.json", Components);
        QJsonObject files{
            {"setup.exe", source("setup.exe")},
            {"second.exe", source("second.exe")},
            {"gone.exe", source("gone.exe")},
            {"silent.exe", source("silent/setup.exe")},
            {"unsigned.exe", QJsonObject{{"addresses", QJsonArray{m_server.address("unsigned.exe")}}}}};
        for (auto it = otherSources.begin(); it != otherSources.end(); ++it)
            files.insert(it.key(), it.value());
        m_service->write(
            "sources.json",
            QJsonDocument(QJsonObject{{"files", files}, {"allow_unverified", allowsUnverified}}).toJson());
        m_server.requests.clear();
        QVERIFY(m_service->start());
    }
    QDBusMessage call(const QString& method, const QVariantList& arguments = {}) const {
        return m_service->call(method, arguments, Object);
    }
    QString error(const QString& method, const QVariantList& arguments) const {
        return call(method, arguments).errorMessage();
    }
    QJsonObject object(const QString& method, const QVariantList& arguments = {}) const {
        return QJsonDocument::fromJson(call(method, arguments).arguments().value(0).toString().toUtf8())
            .object();
    }
    bool is(const QString& method) const {
        const QVariant answer = call(method).arguments().value(0);
        return answer.type() == QVariant::Bool && answer.toBool();
    }
    /// "component status", or the code of the reason where it has failed.
    QStringList states(const QString& method) const {
        const QJsonObject all = object(method);
        QStringList result;
        for (auto it = all.begin(); it != all.end(); ++it) {
            const QJsonObject state = it.value().toObject();
            const QString code = state["reasons"].toArray().first().toObject()["code"].toString();
            result += it.key() + ' ' + (code.isEmpty() ? state["status"].toString() : code);
        }
        return result;
    }
    QStringList exported(const QStringList& components, const QString& name = "e.tar") {
        QFile::remove(archive(name));
        if (const QString fault = error("exportDeps", {components, archive(name)}); !fault.isEmpty())
            return {fault};
        return QTest::qWaitFor([this] { return !is("isExporting"); }, 20000) ? states("exportingStatus")
                                                                             : QStringList();
    }
    QStringList imported(const QString& method, const QVariantList& arguments) {
        if (const QString fault = error(method, QVariantList{Bottle} + arguments); !fault.isEmpty())
            return {fault};
        return QTest::qWaitFor([this] { return !is("isImporting"); }, 30000) ? states("importingStatus")
                                                                             : QStringList();
    }
    QStringList installed() const {
        QStringList names;
        for (const QJsonValue& name : m_service->json("get", {Bottle})["Installed_Dependencies"].toArray())
            names += name.toString();
        return names;
    }
    QStringList store(const QString& filter = "*") const {
        return QDir(m_service->dataDir() + "/downloads")
            .entryList({filter}, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

private Q_SLOTS:
    void initTestCase() {
        m_server.files = {
            {"setup.exe", "a program"}, {"second.exe", "another"}, {"unsigned.exe", "who knows"}};
    }
    void cleanup() { m_service.reset(); }

    void fromHomeToHome() {
        useMachine(true);
        QCOMPARE(exported({"needy", "good", "unsigned", "gone", "tricks", "never-heard", "../x"}),
                 QStringList({"../x no-component", "gone http-status", "good ok", "needy ok",
                              "never-heard no-component", "tricks no-known-file", "unsigned ok"}));
        QTRY_VERIFY(!m_service->signalLog
                         .filter("export, {\"name\":\"needy\",\"progress\":\"100%\",\"status\":\"downl")
                         .isEmpty());
        QTRY_VERIFY(
            m_service->signalLog.contains("notifyProgress(export, {\"name\":\"good\",\"status\":\"ok\"})"));
        QCOMPARE(QDir(m_stick.path()).entryList(QDir::Files | QDir::Hidden), QStringList("e.tar"));
        QVERIFY(error("exportDeps", {QStringList("good"), "e.tar"}).contains("absolute"));
        QVERIFY(error("exportDeps", {QStringList("good"), "/no/such/e.tar"}).contains("Cannot write"));

        useMachine(false);
        QCOMPARE(object("checkDeps", {QStringList{"good", "needy"}}),
                 (QJsonObject{{"valid", QJsonArray()},
                              {"missing", QJsonObject{{"good", QJsonArray{"good"}},
                                                      {"needy", QJsonArray{"good", "needy"}}}}}));
        QCOMPARE(
            object("checkDeps", {QStringList(archive())}),
            (QJsonObject{{"valid", QJsonArray{"good", "needy", "unsigned"}}, {"missing", QJsonObject()}}));
        QCOMPARE(imported("importDeps", {QStringList(archive())}),
                 QStringList({"good ok", "needy ok", "unsigned ok"}));
        QCOMPARE(installed(), QStringList({"good", "needy", "unsigned"}));
        QCOMPARE(readFile(m_service->bottlePath(Bottle) + "/drive_c/windows/system32/made.dll"),
                 QByteArray("new\n"));
        QCOMPARE(m_server.requests, QStringList());
        QCOMPARE(store(), QStringList({"second.exe", "setup.exe", "unsigned.exe"}));
        QCOMPARE(call("getDependencies", {"needy"}).arguments().value(0).toString(), QString("[\"good\"]"));
        QCOMPARE(object("checkDeps", {QStringList{"needy"}})["valid"].toArray(), QJsonArray{"needy"});
        QTRY_COMPARE(m_service->signalLog.filter("dependencySetupDone").size(), 3);
    }

    /// What fails fails alone, but for those that need it.
    void failingAlone() {
        useMachine(false);
        QCOMPARE(exported({"onbad", "bad", "good"}).filter(" ok").size(), 3);
        QCOMPARE(exported({"needy"}, "needy.tar"), QStringList("needy ok"));
        useMachine(false);
        const QStringList files{archive(), archive("needy.tar"), archive("none.tar")};
        const QJsonObject check = object("checkDeps", {files});
        QCOMPARE(check["faults"].toArray().size(), 1);
        QCOMPARE(check["faults"].toArray()[0].toObject()["file"].toString(), archive("none.tar"));
        QCOMPARE(object("checkDeps", {QStringList(archive("needy.tar"))})["missing"].toObject(),
                 (QJsonObject{{"needy", QJsonArray{"good"}}}));
        QCOMPARE(imported("importDeps", {QStringList(archive("needy.tar"))}),
                 QStringList("needy not-on-machine"));
        QCOMPARE(imported("importChosenDeps", {files, QStringList{"good", "needy", "bad", "onbad", "lost"}}),
                 QStringList({"bad installer-code", "good ok", "lost no-ordinary-file", "needy ok",
                              "onbad installer-code"}));
        QCOMPARE(installed(), QStringList({"good", "needy"}));
        QCOMPARE(m_server.requests, QStringList());
        QCOMPARE(imported("importChosenDeps", {QStringList(archive()), QStringList{"other"}}),
                 QStringList("There is no component \"other\"."));
    }

    /// Nothing of a file is used that is not what its list says, or what this machine knows.
    void damaged() {
        useMachine(false);
        exported({"good", "needy"});
        QByteArray content = readFile(archive());
        QFile damaged(archive("damaged.tar"));
        QVERIFY(damaged.open(QIODevice::WriteOnly));
        damaged.write(content.replace("a program", "A PROGRAM"));
        damaged.close();
        useMachine(false);
        QCOMPARE(imported("importDeps", {QStringList(damaged.fileName())}),
                 QStringList({"good bad-export", "needy bad-export"}));
        QCOMPARE(store(), QStringList());
        QCOMPARE(installed(), QStringList());
        // The other file has both, too.
        QCOMPARE(imported("importDeps", {QStringList{damaged.fileName(), archive()}}),
                 QStringList({"good ok", "needy ok"}));
        useMachine(false, {{"second.exe", source("setup.exe")}});
        QCOMPARE(object("checkDeps", {QStringList(archive())})["faults"]
                     .toArray()[0]
                     .toObject()["reasons"]
                     .toArray()[0]
                     .toObject()["code"]
                     .toString(),
                 QString("other-checksum"));
        QVERIFY(error("importDeps", {Bottle, QStringList(archive())}).contains("second.exe"));
        QCOMPARE(object("importingStatus"), QJsonObject());
        QVERIFY(error("importDeps", {Bottle, QStringList(QVector<QString>(201, archive()).toList())})
                    .contains("Too many"));
    }

    /// One file with two contents: without a known checksum nobody can say which is right.
    void disagreeing() {
        useMachine(true);
        exported({"unsigned"});
        m_server.files["unsigned.exe"] = "who else";
        useMachine(true);
        exported({"unsigned"}, "f.tar");
        m_server.files["unsigned.exe"] = "who knows";
        useMachine(false, {{"setup.exe", QJsonObject{{"size", 9}, {"sha256", QString(64, 'a')}}}});
        m_service->write("downloads/setup.exe", "cut");
        const QJsonObject check = object("checkDeps", {QStringList{archive(), archive("f.tar"), "good"}});
        QCOMPARE(check["valid"].toArray(), QJsonArray{"unsigned"});
        QCOMPARE(check["missing"].toObject().keys(), QStringList("good"));
        QCOMPARE(check["faults"].toArray()[0].toObject()["file"].toString(), archive("f.tar"));
        QCOMPARE(imported("importDeps", {QStringList{archive(), archive("f.tar")}}),
                 QStringList("unsigned ok"));
        QCOMPARE(readFile(m_service->dataDir() + "/downloads/unsigned.exe"), QByteArray("who knows"));
    }

    /// What others have begun in the bottle goes on.
    void stopping() {
        useMachine(false);
        exported({"good", "needy"});
        QCOMPARE(m_service->error("installDependency", {Bottle, "silent"}), QString());
        QCOMPARE(error("importDeps", {Bottle, QStringList(archive())}), QString());
        QVERIFY(is("isImporting"));
        call("cancelImport");
        QTRY_COMPARE(states("importingStatus"), QStringList({"good cancelled", "needy cancelled"}));
        QVERIFY(!is("isImporting"));
        QCOMPARE(m_service->text("getInstallingDependency", {Bottle}), QString("silent"));
    }

    void oneAtATime() {
        useMachine(false);
        exported({"good"});
        const auto running = [this] { return states("exportingStatus").join(' '); };
        QCOMPARE(error("exportDeps", {QStringList{"silent", "good"}, archive("late.tar")}), QString());
        QVERIFY(is("isExporting"));
        QCOMPARE(running(), QString("good running silent running"));
        QVERIFY(error("exportDeps", {QStringList("good"), archive("other.tar")}).contains("already"));
        call("cancelExport");
        QTRY_COMPARE(running(), QString("good export-cancelled silent export-cancelled"));
        QVERIFY(!is("isExporting") && !QFile::exists(archive("late.tar")));
        QCOMPARE(error("exportDeps", {QStringList{"silent"}, archive("late.tar")}), QString());
        TestSupport::ChildProcess game;
        m_service->startProgram(&game, Bottle, "C:\\game.exe");
        QTRY_COMPARE(call("importDeps", {Bottle, QStringList(archive())}).errorName(),
                     QString("com.lumora.Error.Busy"));
        QVERIFY(!is("isImporting"));
        QDBusPendingCall waiting =
            m_service->callLater("importDeps", {Bottle, QStringList(archive())}, Object);
        QVERIFY(is("isImporting") && object("importingStatus").isEmpty());
        call("cancelImport");
        waiting.waitForFinished();
        QVERIFY(waiting.error().message().contains("cancelled") && !is("isImporting"));
        QVERIFY(error("importDeps", {"none", QStringList(archive())}).contains("none"));

        // A killed service leaves nothing half done, and the next one knows of no export.
        const QString half = archive(".late.tar.cellarix-new");
        m_service->write("unfinished-export", half.toUtf8());
        m_service->write("downloads/.importing-x/setup.exe", "half");
        QFile file(half);
        QVERIFY(file.open(QIODevice::WriteOnly));
        m_service->kill();
        QVERIFY(m_service->start());
        QVERIFY(!is("isExporting") && running().isEmpty() && !file.exists());
        QTRY_COMPARE(store(".*"), QStringList());
    }
};

QTEST_GUILESS_MAIN(ServiceOfflineTest)
#include "ServiceOfflineTest.moc"
