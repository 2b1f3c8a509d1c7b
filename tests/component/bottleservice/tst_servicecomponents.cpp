#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include "ServiceFixture.h"
#include "support/HttpServer.h"

namespace {

const QString Bottle = "real";

void write(const QString& path, const QByteArray& content, bool isProgram = false) {
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
    if (isProgram)
        file.setPermissions(file.permissions() | QFile::ExeOwner);
}

QByteArray read(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

QByteArray json(const QJsonObject& object) {
    return QJsonDocument(object).toJson();
}

/// Does what installers do, as far as files go: adds and changes, runs on in the background, fails.
const char Wine[] = R"sh(#!/bin/sh
cd "$WINEPREFIX" || exit 1
for word in "$@"; do
    case "$word" in
        write) echo new > drive_c/windows/system32/made.dll
               echo new > drive_c/windows/system32/old.dll
               echo new > system.reg;;
        wait) sleep 60;;
        restart) exit 194;;
        fail) exit 3;;
    esac
done
)sh";

}  // namespace

/// Components of the machine and of bottles through the real service, with a Wine whose installers do as they
/// are told.
class tst_ServiceComponents : public QObject {
    Q_OBJECT

    std::unique_ptr<ServiceFixture> m_service;
    TestSupport::HttpServer m_server;

    QString path(const QString& inBottle) const { return m_service->bottlePath(Bottle) + '/' + inBottle; }
    QJsonObject record() const {
        const QString text = m_service->call("get", {Bottle}).arguments().value(0).toString();
        return QJsonDocument::fromJson(text.toUtf8()).object();
    }
    QJsonArray installed() const { return record()["Installed_Dependencies"].toArray(); }
    /// What the last installer has done.
    QByteArray state() const {
        return read(path("drive_c/windows/system32/old.dll")).trimmed() +
               read(path("drive_c/windows/system32/made.dll")).trimmed() + read(path("system.reg")).trimmed();
    }
    QStringList told(const QString& signal) const { return m_service->signalLog.filter(signal); }

    void recipe(const QString& name, const QJsonArray& steps, const QJsonArray& needs = {}) {
        QJsonObject all = QJsonDocument::fromJson(read(m_service->dataDir() + "/dependency.json")).object();
        all.insert(name, QJsonObject{{"needs", needs}, {"recipe", QJsonObject{{"steps", steps}}}});
        write(m_service->dataDir() + "/dependency.json", json(all));
    }

private Q_SLOTS:
    void init() {
        m_service = std::make_unique<ServiceFixture>();
        const QString runner = m_service->dataDir() + "/runners/stand-in/bin/";
        write(runner + "wine", Wine, true);
        write(runner + "wineserver", "#!/bin/sh\n", true);
        write(path("bottle.yml"), "Runner: stand-in\nOwn: 1\n");
        write(path("drive_c/windows/system32/old.dll"), "old");
        write(path("system.reg"), "old");
        m_server.files = {{"setup.exe", "a program"}};
        m_server.requests.clear();
        const QByteArray sum = QCryptographicHash::hash("a program", QCryptographicHash::Sha256).toHex();
        const auto file = [this, sum](const QString& address) {
            return QJsonObject{{"addresses", QJsonArray{m_server.address(address)}},
                               {"sha256", QString::fromLatin1(sum)}};
        };
        write(m_service->dataDir() + "/sources.json",
              json({{"files", QJsonObject{{"setup.exe", file("setup.exe")},
                                          {"silent.exe", file("silent/setup.exe")},
                                          {"gone.exe", file("gone")},
                                          {"unknown.exe", QJsonObject{{"addresses", QJsonArray{"/x"}}}}}}}));
        const auto run = [](const QString& program, const QJsonArray& arguments) {
            return QJsonObject{{"run", program}, {"arguments", arguments}};
        };
        recipe("good", {run("setup.exe", {"write"}), run("setup.exe", {"restart"}),
                        QJsonObject{{"override", QJsonArray{"made"}}, {"mode", "native"}}});
        recipe("needy", {run("setup.exe", {})}, {"good"});
        recipe("failing", {run("setup.exe", {"write"}), run("setup.exe", {"fail"})});
        recipe("slow", {run("setup.exe", {"write"}), run("setup.exe", {"wait"})});
        for (const char* name : {"silent", "gone", "unknown"})
            recipe(name, {run(QString(name) + ".exe", {})});
        QVERIFY(m_service->start());
    }
    void cleanup() { m_service.reset(); }

    void install() {
        QVERIFY(m_service->call("installDependency", {Bottle, "needy"}).errorMessage().isEmpty());
        QCOMPARE(m_service->call("getInstallingDependency", {Bottle}).arguments().value(0).toString(),
                 QString("needy"));
        // The second waits for the first.
        QVERIFY(m_service->call("installDependency", {Bottle, "good"}).errorMessage().isEmpty());
        QTRY_COMPARE(told("dependencySetupDone"),
                     QStringList({"dependencySetupDone(real, needy, {\"ok\":true})",
                                  "dependencySetupDone(real, good, {\"ok\":true})"}));
        QCOMPARE(told("StepNotify(real, needy"),
                 QStringList({"dependencySetupStepNotify(real, needy, 0, 4)",
                              "dependencySetupStepNotify(real, needy, 1, 4)",
                              "dependencySetupStepNotify(real, needy, 2, 4)",
                              "dependencySetupStepNotify(real, needy, 3, 4)",
                              "dependencySetupStepNotify(real, needy, 4, 4)"}));
        QVERIFY(!told("DownloadProgress(real, needy, 9, 9, done)").isEmpty());
        QVERIFY(!told("Description(real, needy, Downloading setup.exe)").isEmpty());
        QCOMPARE(state(), QByteArray("newnewnew"));
        QCOMPARE(installed(), QJsonArray({"good", "needy"}));
        QCOMPARE(record()["DLL_Overrides"].toObject(), QJsonObject({{"made", "n"}}));
        QCOMPARE(record()["Own"].toInt(), 1);
        QCOMPARE(m_server.requests, QStringList{"setup.exe@0"});
        QTRY_COMPARE(QDir(path("")).entryList({".before*"}, QDir::AllEntries | QDir::Hidden), QStringList());
    }

    /// Whatever goes wrong, the bottle is what it was, and it is told.
    void failure_data() {
        QTest::addColumn<QString>("sentence");
        QTest::newRow("failing") << "ended with code 3";
        QTest::newRow("gone") << "could not be fetched";
        QTest::newRow("unknown") << "No checksum";
        QTest::newRow("never-heard-of") << "no component";
    }
    void failure() {
        QFETCH(QString, sentence);
        m_service->call("installDependency", {Bottle, QTest::currentDataTag()});
        QTRY_COMPARE(told("dependencySetupDone").size(), 1);
        QVERIFY(told("dependencySetupDone")[0].contains(sentence));
        QCOMPARE(state(), QByteArray("old(none)old"));
        QCOMPARE(installed(), QJsonArray());
        m_service->call("installDependency", {Bottle, "good"});
        QTRY_VERIFY(!told("Done(real, good, {\"ok\":true})").isEmpty());
    }

    void cancelling_data() {
        QTest::addColumn<bool>("isInstaller");
        QTest::newRow("silent") << false;
        QTest::newRow("slow") << true;
    }
    void cancelling() {
        QFETCH(bool, isInstaller);
        m_service->call("installDependency", {Bottle, QTest::currentDataTag()});
        m_service->call("installDependency", {Bottle, "good"});
        if (isInstaller)
            QTRY_VERIFY(state() == "newnewnew");
        else
            QTRY_COMPARE(m_server.requests, QStringList{"silent/setup.exe@0"});
        QVERIFY(m_service->call("cancelInstallingDependency", {Bottle}).errorMessage().isEmpty());
        QTRY_COMPARE(told("dependencySetupDone").filter("\"ok\":false").size(), 2);
        QCOMPARE(state(), QByteArray("old(none)old"));
    }

    void killedAndDeleted() {
        m_service->call("installDependency", {Bottle, "slow"});
        QTRY_VERIFY(state() == "newnewnew");
        m_service->kill();
        QVERIFY(m_service->start());
        QTRY_COMPARE(state(), QByteArray("old(none)old"));
        // The next one has the bottle for itself, and the end of the bottle ends it.
        m_service->call("installDependency", {Bottle, "slow"});
        QTRY_VERIFY(state() == "newnewnew");
        QVERIFY(m_service->call("delete", {Bottle}).errorMessage().isEmpty());
        QVERIFY(!QFile::exists(path("")));
        QTRY_COMPARE(told("dependencySetupDone").filter("\"ok\":false").size(), 1);
    }

    void machineAndBottle() {
        const QString pack = m_service->home() + "/pack/second-1.0/bin/";
        write(pack + "wine", Wine, true);
        write(pack + "wineserver", "#!/bin/sh\n", true);
        write(m_service->home() + "/pack/layer/x32/d3d9.dll", "layer");
        for (const char* name : {"second-1.0", "layer"}) {
            QProcess tar;
            tar.start("tar", {"-C", m_service->home() + "/pack", "-czf",
                              m_service->home() + "/mirror-" + name + ".tgz", name});
            QVERIFY(tar.waitForFinished());
        }
        const QString mirror = m_service->home() + "/mirror";
        QVERIFY(QDir().mkpath(mirror));
        for (const char* name : {"second-1.0", "layer"})
            QVERIFY(QFile::rename(mirror + '-' + name + ".tgz", mirror + '/' + name + ".tgz"));
        write(mirror + "/bad.tgz", "no archive");
        write(m_service->dataDir() + "/sources.json",
              json({{"mirrors", QJsonArray{mirror}},
                    {"allow_unverified", true},
                    {"archives",
                     QJsonObject{{"runner", QJsonObject{{"second", "second-1.0.tgz"}, {"bad", "bad.tgz"}}},
                                 {"dxvk", QJsonObject{{"layer", "layer.tgz"}}}}}}));
        const auto install = [this](const QString& kind, const QString& name) {
            const QString text =
                m_service->callComponents("install", {kind, name}).arguments().value(0).toString();
            return QJsonDocument::fromJson(text.toUtf8()).object()["ok"].toBool();
        };
        QVERIFY(!install("runner", "bad") && !install("runner", "../x") && !install("runner", ""));
        QTRY_COMPARE(told("installed(0, runner, ").size(), 3);
        QVERIFY(told("refresh").isEmpty());
        QCOMPARE(m_service->callComponents("install", {"game", "x"}).errorName(),
                 QString("com.lumora.Error.InvalidArgs"));

        // Fetched on the way, for a bottle.
        m_service->call("setRunner", {Bottle, "second", true});
        QTRY_VERIFY(!told("component_setup_done(real, runner, second, {\"ok\":true})").isEmpty());
        QStringList order = m_service->signalLog.filter("second");
        order.replaceInStrings(QRegularExpression("\\(.*"), "");
        QCOMPARE(order, QStringList({"component_waiting_downloaded", "refresh", "installed",
                                     "component_setup_start", "component_setup_done"}));
        QCOMPARE(record()["Runner"].toString(), QString("second"));
        QVERIFY(!(QFile::permissions(m_service->dataDir() + "/runners/second/bin/wine") & QFile::WriteOwner));
        QVERIFY(install("runner", "second"));
        m_service->call("setRunner", {Bottle, "missing", true});
        QTRY_VERIFY(!told("component_setup_done(real, runner, missing, {\"error\"").isEmpty());
        QCOMPARE(record()["Runner"].toString(), QString("second"));

        const QString dll = path("drive_c/windows/system32/d3d9.dll");
        m_service->call("setDxvk", {Bottle, "layer", true});
        QTRY_COMPARE(record()["DXVK"].toString(), QString("layer"));
        QCOMPARE(read(dll), QByteArray("layer"));
        QCOMPARE(record()["DLL_Overrides"].toObject()["d3d9"].toString(), QString("n"));
        m_service->call("setDxvk", {Bottle, "-", true});
        QTRY_COMPARE(record()["DXVK"].toString(), QString());
        QVERIFY(!QFile::exists(dll) && record()["DLL_Overrides"].toObject().isEmpty());
        const QString text = m_service->callComponents("list").arguments().value(0).toString();
        const QJsonObject runners = QJsonDocument::fromJson(text.toUtf8())["runner"].toObject();
        QVERIFY(runners["installed"].toArray().contains("second"));
        QVERIFY(runners["supported"].toArray().contains("bad"));
        for (const char* directory : {"runners", "dxvk"})
            QTRY_COMPARE(QDir(m_service->dataDir() + '/' + directory)
                             .entryList({".*"}, QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot),
                         QStringList());
    }
};

QTEST_GUILESS_MAIN(tst_ServiceComponents)
#include "tst_servicecomponents.moc"
