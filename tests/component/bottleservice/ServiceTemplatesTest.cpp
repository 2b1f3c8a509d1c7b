#include <sys/stat.h>
#include <unistd.h>

#include <QDirIterator>
#include <QStandardPaths>
#include <QtTest>
#include <algorithm>

#include "ServiceFixture.h"
#include "bottleservice/wine/Processes.h"
#include "bottleservice/wine/SlimPrefix.h"

using TestSupport::readFile;

namespace {

const QString System = "/drive_c/windows/system32/";
const QDir::Filters AllDirs = QDir::AllDirs | QDir::Hidden | QDir::NoDotAndDotDot;
const QStringList Overwritten = {"msvcp140.dll", "vcruntime140.dll", "comctl32.dll", "riched20.dll"};

/// Names, sizes and change times of trees: no write leaves the change time as it was.
QMap<QString, QString> digest(const QStringList& roots) {
    QMap<QString, QString> entries;
    for (const QString& root : roots) {
        QDirIterator walk(root, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                          QDirIterator::Subdirectories);
        while (walk.hasNext()) {
            struct stat status = {};
            const QString path = walk.next();
            ::lstat(QFile::encodeName(path).constData(), &status);
            entries[path] = QString("%1 %2 %3")
                                .arg(status.st_size)
                                .arg(status.st_ctim.tv_sec)
                                .arg(status.st_ctim.tv_nsec);
        }
    }
    return entries;
}

}  // namespace

/// Bottles as copies of a template that real Wine made.
class ServiceTemplatesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        if (QStandardPaths::findExecutable("wine").isEmpty())
            QSKIP("wine-is-not-installed");
        m_service = std::make_unique<ServiceFixture>();
        const auto prepare = [this] {
            QProcess process;
            process.setProcessEnvironment(m_service->environment());
            process.start(SERVICE_EXECUTABLE, {"--prepare-templates"});
            return process.waitForFinished(120000) && process.exitCode() == 0;
        };
        QVERIFY(prepare());
        const QDir templates(m_service->dataDir() + "/templates");
        QCOMPARE(templates.entryList(AllDirs).size(), 1);
        QVERIFY(m_service->start());
        QVERIFY(prepare());  // the service holds the directory
        QDBusPendingCall first = m_service->callLater("createBottles", {"first", ""});
        QVERIFY(m_service->json("createBottles", {"second", ""})["created"].toBool());
        first.waitForFinished();
        QVERIFY(first.reply().arguments().value(0).toString().contains("\"created\":true"));
        const QStringList made = templates.entryList(AllDirs);
        QCOMPARE(made.size(), 1);
        m_template = m_service->dataDir() + "/templates/" + made[0];
    }

    void installerOverwritesItsOwnFiles_data() {
        QTest::addColumn<QString>("target");
        QTest::newRow("64 bit") << "Target amd64-unicode\n";
        QTest::newRow("32 bit") << "";
    }
    void installerOverwritesItsOwnFiles() {
        QFETCH(QString, target);
        if (QStandardPaths::findExecutable("makensis").isEmpty())
            QSKIP("makensis-is-not-installed");
        const QString bottle = m_service->bottlePath("second");
        const QString system = target.isEmpty() ? QString("/drive_c/windows/syswow64/") : System;
        const QString wine = QStandardPaths::findExecutable("wine");
        if (target.isEmpty() && SlimPrefix::peDirectories(wine).filter("i386-windows").isEmpty())
            QSKIP("wine32-is-not-installed");
        const auto& home = m_service->home();
        const QString work = home.path() + "/work";
        QVERIFY(QDir().mkpath(work + "/run"));  // or the installer would load the files beside it
        QByteArray script =
            target.toUtf8() +
            "Name x\nOutFile run/setup.exe\nSilentInstall silent\nRequestExecutionLevel user\n"
            "Section\nSetOverwrite on\nSetOutPath $SYSDIR\n";
        for (const QString& name : Overwritten) {
            home.write("work/" + name, "installed " + name.toUtf8());
            script += "File " + name.toUtf8() + '\n';
        }
        const QString setup = home.write(
            "work/setup.nsi", script + "FileOpen $0 $SYSDIR\\done.txt w\nFileClose $0\nSectionEnd\n");
        QVERIFY(TestSupport::runProcess("makensis", {"-V1", setup}).ok());

        const QStringList others = SlimPrefix::peDirectories(wine) << m_template;
        const auto before = digest(others);
        QCOMPARE(m_service->error("run_command", {"second", '"' + work + "/run/setup.exe\" /S"}), QString());
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(bottle + system + "done.txt"), 60000);
        m_service->call("killWineServer", {"second"});
        for (const QString& name : Overwritten)
            QCOMPARE(readFile(bottle + system + name), "installed " + name.toUtf8());
        QVERIFY(digest(others) == before);
    }

    void recreatesWhileServing() {
        // The script finds the service beside itself.
        const QString files = m_service->home().path() + "/files/";
        m_script = files + "share/cellarix/package-scripts/init-bottle-in-client.sh";
        QVERIFY(QDir().mkpath(QFileInfo(m_script).path()) && QDir().mkpath(files + "bin"));
        QVERIFY(QFile::link(SERVICE_EXECUTABLE, files + "bin/lumora-wine-launcher"));
        QVERIFY(QFile::copy(TEST_SOURCE_DIR "/src/platform/scripts/package-scripts/init-bottle-in-client.sh",
                            m_script));
        QDir templates(m_service->dataDir() + "/templates");
        QVERIFY(QFile::rename(m_template + "/user.reg", m_template + "/moved"));
        QCOMPARE(check(), 1);
        QVERIFY(QFile::rename(m_template + "/moved", m_template + "/user.reg"));
        QCOMPARE(check(), 0);
        m_service->write("templates.json", R"({"lumora-wine10-stable": "0123", "gone": "0"})");
        QCOMPARE(check(), 1);

        const auto before = digest({m_template});
        QProcess script;
        script.setProcessEnvironment(m_service->environment());
        script.setProcessChannelMode(QProcess::MergedChannels);
        script.start(m_script, {"-r", "--recreate"});
        QVERIFY(script.waitForReadyRead());
        QVERIFY(m_service->json("createBottles", {"third", ""})["created"].toBool());
        QVERIFY2(script.state() == QProcess::Running, "the bottle waited for the new template");
        QVERIFY(script.waitForFinished(120000));
        const QByteArray lines = script.readAll();
        QVERIFY2(lines.contains("Made it in ") && lines.endsWith("up to date.\n"), lines.constData());
        QCOMPARE(script.exitCode(), 0);
        QCOMPARE(check(), 0);
        QVERIFY(digest({m_template}) != before);
        QVERIFY(QFileInfo::exists(m_service->bottlePath("third") + System + "kernel32.dll"));
        QTRY_COMPARE(templates.entryList(AllDirs), QStringList(QFileInfo(m_template).fileName()));
    }

    void followsItsWine() {
        m_service->kill();
        const QString kernel = m_service->bottlePath("first") + System + "kernel32.dll";
        const QByteArray key = QFileInfo(m_template).fileName().toUtf8();
        const auto settings = [this](const QString& bottle) {
            return readFile(m_service->bottlePath(bottle) + "/bottle.yml");
        };
        for (const QString bottle : {"first", "second"}) {
            QVERIFY(settings(bottle).contains(key));
            m_service->write("bottles/" + bottle + "/bottle.yml", settings(bottle).replace(key, "0123"));
        }
        const QDir data(m_service->dataDir());
        QVERIFY(data.mkdir("templates/.creating-x"));
        QCOMPARE(check(), 1);
        QVERIFY(QFile::remove(kernel) && data.mkdir("templates/stale"));
        QVERIFY(m_service->start());
        for (const char* bottle : {"first", "second"})
            QTRY_VERIFY_WITH_TIMEOUT(settings(bottle).contains(key), 60000);
        QVERIFY(QFileInfo::exists(kernel));
        QTRY_VERIFY(!data.exists("templates/stale"));
        QCOMPARE(check(), 0);
    }

    /// What Wine's part of a bottle has lost comes back; what installers have put there stays.
    void repairsDamage() {
        const QString path = m_service->bottlePath("first");
        const auto ask = [this](const char* method) {
            const QDBusMessage reply = m_service->call(method, {"first"}, "Repair");
            return QJsonDocument::fromJson(reply.arguments().value(0).toString().toUtf8()).object();
        };
        QCOMPARE(ask("damage")["files"].toArray(), QJsonArray());
        const QStringList lost = {System.mid(1) + "kernel32.dll", System.mid(1) + "ntdll.dll",
                                  System.mid(1) + "vcruntime140.dll", "user.reg", "dosdevices/c:"};
        for (const QString& name : lost)
            QVERIFY(QFile::remove(path + '/' + name));
        QVERIFY(QFile::link("/nowhere", path + System + "ntdll.dll"));
        m_service->write("bottles/first" + System + "vcruntime140.dll",
                         readFile(m_template + System + "vcruntime140.dll").left(5000));
        const QByteArray own = readFile(m_template + System + "riched20.dll") + "own";
        m_service->write("bottles/first" + System + "msvcp140.dll", own);
        QCOMPARE(ask("damage")["count"].toInt(), lost.size());

        const QString stat = readFile("/proc/self/stat");
        const QString claim =
            m_service->write("running/1.start",
                             QJsonDocument(QJsonObject{{"bottle", "first"},
                                                       {"name", "Harbour"},
                                                       {"pid", qint64(::getpid())},
                                                       {"start", stat.section(") ", 1).section(' ', 19, 19)}})
                                 .toJson());
        QCOMPARE(ask("renewBottle")["busy"].toArray(), QJsonArray{"Harbour"});
        QVERIFY(QFile::remove(claim));
        QCOMPARE(ask("renewBottle"), QJsonObject({{"ok", true}, {"mended", lost.size()}}));
        QCOMPARE(ask("damage")["files"].toArray(), QJsonArray());
        QCOMPARE(readFile(path + System + "msvcp140.dll"), own);
        QVERIFY(QFileInfo(path + System + "kernel32.dll").isSymLink());
        QVERIFY(!readFile(path + "/system.reg").contains("\"winemenubuilder\"="));
        QVERIFY(QDir(path + "/drive_c/windows").removeRecursively());
        const QJsonObject whole = ask("renewBottle");
        QVERIFY2(whole["mended"].toInt() > 500, QJsonDocument(whole).toJson().constData());
        QCOMPARE(ask("damage")["files"].toArray(), QJsonArray());
    }

    void preparesAhead() {
        m_service.reset();  // there is one bus at a time
        ServiceFixture service;
        service.variables["CELLARIX_PREPARE_SECONDS"] = "0";
        // The user's other work goes on until the file is there.
        const QString go = service.home().path() + "/go";
        service.write("runners/slow/bin/wine",
                      "#!/bin/sh\nuntil [ -e '" + go.toUtf8() + "' ]; do sleep 0.1; done", true);
        // One letter for each of Wine's processes that make the template; T is stopped.
        const auto states = [&service] {
            QByteArray letters;
            for (const QString& place : service.unfinished("templates")) {
                for (const auto& entry : Processes().ofBottle(service.dataDir() + "/templates/" + place)) {
                    const QByteArray stat = readFile(QString("/proc/%1/stat").arg(entry.pid));
                    letters += stat.mid(stat.lastIndexOf(')') + 2, 1);
                }
            }
            return letters;
        };
        // Once: in the midst of an exec a process shows no mark.
        const auto hasBegun = [&states] {
            return TestSupport::waitUntil([&states] { return states().size() > 2; }, 30000);
        };
        // Some times in a row, for the same reason. One that was seen before may have ended of itself.
        const auto isStopped = [&states] {
            int looks = 0;
            const auto look = [&] {
                const QByteArray letters = states();
                looks = !letters.isEmpty() && letters.count('T') == letters.size() ? looks + 1 : 0;
                return looks == 3;
            };
            return TestSupport::waitUntil(look, 10000);
        };
        // Who prepares beside the service makes way for it.
        TestSupport::ChildProcess early;
        early.setProcessEnvironment(service.environment());
        early.start(SERVICE_EXECUTABLE, {"--prepare-templates"});
        QVERIFY(hasBegun());
        QVERIFY(service.start());
        QTRY_COMPARE(early.state(), QProcess::NotRunning);
        QCOMPARE(early.exitCode(), 0);
        QVERIFY(hasBegun());
        QVector<QDBusPendingCall> others{service.callLater("createBottles", {"other", "slow"})};
        QVERIFY(isStopped());
        service.callManager("Quit");
        QTRY_COMPARE_WITH_TIMEOUT(service.process().state(), QProcess::NotRunning, 10000);
        QCOMPARE(service.unfinished("templates"), QStringList());
        QCOMPARE(states(), QByteArray());

        const int begun = service.log().count("making the template of \"lumora-wine10-stable\"");
        QVERIFY(service.start({"--idle-seconds", "1"}));
        QVERIFY(hasBegun());
        for (const char* bottle : {"other", "another"}) {
            others += service.callLater("createBottles", {bottle, "slow"});
            QVERIFY(isStopped());
            if (bottle != QByteArray("other"))
                break;
            service.home().write("go", "");
            QTRY_VERIFY_WITH_TIMEOUT(!states().contains('T'), 10000);
            QVERIFY(QFile::remove(go));
        }
        QVERIFY(service.json("createBottles", {"first", ""})["created"].toBool());
        QTRY_VERIFY(service.templateLog.contains("preparing(lumora-wine10-stable, 100)"));
        QStringList told = service.templateLog.filter("preparing(lumora-wine10-stable, ");
        for (QString& line : told)
            line = line.section(' ', 1).rightJustified(5);
        QVERIFY2(told.size() > 2 && std::is_sorted(told.begin(), told.end()), qPrintable(told.join(' ')));
        QCOMPARE(service.log().count("making the template of \"lumora-wine10-stable\""), begun + 1);
        service.home().write("go", "");
        QTRY_COMPARE_WITH_TIMEOUT(service.process().state(), QProcess::NotRunning, 30000);
    }

private:
    /// What the script answers to the question whether templates have to be made anew.
    int check() const { return TestSupport::runProcess(m_script, {"-c"}, {"LC_ALL=C"}).exitCode; }

    QString m_script;
    std::unique_ptr<ServiceFixture> m_service;
    QString m_template;
};

QTEST_GUILESS_MAIN(ServiceTemplatesTest)
#include "ServiceTemplatesTest.moc"
