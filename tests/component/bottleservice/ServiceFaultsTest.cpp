#include <signal.h>
#include <unistd.h>

#include <QDirIterator>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QtTest>

#include "ServiceFixture.h"
#include "bottleservice/wine/Processes.h"

namespace {

const QString Id = "7b1b4b1e-0000-4000-8000-000000000001";

/// What callers say, where they mean harm or make mistakes.
QStringList texts() {
    QStringList all{QString(), QString(300, 'x'), QString(5 * 1024 * 1024, '{'), Id};
    all << QString("Name: n\nDebInfo: {}\nBottle: {Files: [{Path: 'c:/a', Text: b}]}").toUtf8().toBase64();
    all << QString::fromUtf8("\u202e\u0001\n名") << "{\"id\":\"" + Id + "\",\"path\":\"../../outside/x\"}";
    return all + QString(
                     "real linked real/drive_c .creating-x .. ../outside /etc public/../real [[[ {} -rf %s%n "
                     "gl")
                     .split(' ')
           << "; touch /tmp/x $(touch /tmp/x) `id` | cat";
}

int rounds(int usual) {
    const int wanted = qEnvironmentVariableIntValue("CELLARIX_FAULT_ROUNDS");
    return wanted > 0 ? wanted : usual;
}

QVariant argument(QChar type, QRandomGenerator* random) {
    static const QStringList all = texts();
    const QString text = all[random->bounded(all.size())];
    const qint64 numbers[] = {0, -1, 96, std::numeric_limits<qint64>::max(), std::numeric_limits<int>::min()};
    const qint64 number = numbers[random->bounded(5)];
    return type == 'b'   ? QVariant(true)
           : type == 'i' ? QVariant(int(number))
           : type == 'x' ? QVariant(number)
           : type == 'a' ? QVariant(QStringList{text, ".txt"})
                         : QVariant(text);
}

/// Paths and sizes of all that lies in the home but the service's own data.
QSet<QString> census(const ServiceFixture& service) {
    QSet<QString> all;
    QDirIterator it(service.home().path(),
                    QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QFileInfo info(it.next());
        if (!info.filePath().startsWith(service.dataDir()))
            all += info.filePath() + ' ' + QString::number(info.isDir() ? 0 : info.size());
    }
    return all;
}

}  // namespace

/// What must never cost anybody a bottle: hostile callers, a disk that fails, a kill at any moment. Longer
/// runs by CELLARIX_FAULT_ROUNDS.
class ServiceFaultsTest : public QObject {
    Q_OBJECT

    static QString nameOf(const ServiceFixture& service) {
        return service.json("get", {"real"})["External_Programs"][Id]["name"].toString();
    }
    static QVariantList renamed(const QString& name) {
        return {"real", QString(R"({"id":"%1","path":"C:\\a.exe","name":"%2"})").arg(Id, name)};
    }

private Q_SLOTS:
    void hostileCallers() {
        ServiceFixture service;
        service.variables["PATH"] = "/nowhere";  // no Wine: whatever gets through makes no prefix
        QVERIFY(service.start());
        service.write("bottles/real/bottle.yml", "Runner: none\n");
        service.home().write("outside/bottle.yml", "Runner: none\n");
        QVERIFY(QFile::link(service.home().path() + "/outside", service.bottlePath("linked")));
        QCOMPARE(service.error("updateExternalProgram", renamed("n")), QString());
        const QSet<QString> before = census(service);
        QStringList methods = service.introspect("com.lumora.Manager.Bottles").methods;
        QVERIFY(methods.size() > 40);
        QMap<QString, QString> objects;  // of the methods that the bottles' object does not have
        for (const char* object : {"InstallerManager", "Backup"}) {
            for (const QString& method : service.introspect(QString("com.lumora.Manager.") + object).methods)
                objects[method] = object;
        }
        methods += objects.keys();
        QRandomGenerator random(1);
        for (int round = 0; round < rounds(6); ++round) {
            for (const QString& method : methods) {
                const QString name = method.section(':', 0, 0);
                QString signature = method.section(':', 1, 1);
                QVariantList arguments;
                for (const QChar type : signature.replace("as", "a"))
                    arguments += argument(type, &random);
                if (name == "delete")
                    arguments[0] = "another";
                else if (round % 2 && !arguments.isEmpty())
                    arguments[0] = "real";
                const QDBusMessage reply = service.call(name, arguments, objects.value(method, "Bottles"));
                const bool isAnswer = reply.type() == QDBusMessage::ReplyMessage ||
                                      reply.errorName().startsWith("com.lumora.Error.");
                QVERIFY2(isAnswer, qPrintable(name + ": " + reply.errorMessage()));
                QVERIFY2(reply.errorMessage().size() < 1500, qPrintable(name));
            }
        }
        QVERIFY(service.isOnBus());
        QVERIFY(!nameOf(service).isEmpty());
        QVERIFY(!service.text("list").contains("linked"));
        const QSet<QString> after = census(service);
        QCOMPARE(before - after, QSet<QString>());
        // The one thing that a caller could rightly ask for.
        for (const QString& entry : after - before)
            QVERIFY2(entry.contains("/share/applications") || entry.contains("/share/mime") ||
                         entry.contains("/Desktop/cellarix-"),
                     qPrintable(entry));
    }

    /// Each system call of an update fails in turn.
    void failingDisk() {
        if (QStandardPaths::findExecutable("strace").isEmpty())
            QSKIP("needs-strace");
        ServiceFixture service;
        QVERIFY(service.start());
        const QString path = service.bottlePath("real");
        service.write("bottles/real/bottle.yml", "Runner: none\nOwn: [1, 2]\n");
        QCOMPARE(service.error("updateExternalProgram", renamed("0")), QString());
        int failures = 0;
        for (const char* call : {"openat", "write", "fsync", "rename"}) {
            for (int number = 1; number <= 2; ++number) {
                QProcess tracer;
                tracer.start("strace", {"-f", "-o", service.home().path() + "/trace", "-P",
                                        path + "/.bottle.yml.cellarix-new", "-e",
                                        QString("inject=%1:error=ENOSPC:when=%2").arg(call).arg(number), "-p",
                                        QString::number(service.process().processId())});
                const auto isAttached = [&] {
                    const QString status = QString("/proc/%1/status").arg(service.process().processId());
                    return tracer.state() == QProcess::NotRunning ||
                           !TestSupport::readFile(status).contains("TracerPid:\t0\n");
                };
                QTRY_VERIFY(isAttached());
                if (tracer.state() == QProcess::NotRunning)
                    QSKIP("tracing-is-not-allowed-here");
                const QString old = nameOf(service);
                const QString wanted = QString("%1-%2").arg(call).arg(number);
                const bool failed = !service.error("updateExternalProgram", renamed(wanted)).isEmpty();
                tracer.terminate();
                tracer.waitForFinished();
                failures += failed;
                QCOMPARE(nameOf(service), failed ? old : wanted);
                QCOMPARE(QDir(path).entryList(QDir::Files | QDir::Hidden),
                         QStringList({"bottle.yml", "launch.json"}));
            }
        }
        QVERIFY2(failures >= 4, qPrintable(QString::number(failures)));
        QVERIFY(TestSupport::readFile(path + "/bottle.yml").contains("Own:"));
    }

    /// A bottle that does not fit is refused in words, and nothing of it stays.
    void fullDisk() {
        ServiceFixture service;
        const QString disk = service.dataDir();
        QVERIFY(QDir().mkpath(disk));
        if (::geteuid() != 0 ||
            !TestSupport::runProcess("mount", {"-t", "tmpfs", "-o", "size=8m", "tmpfs", disk}).ok())
            QSKIP("cannot-mount-a-small-file-system-here");
        service.write("runners/big/bin/wine", "#!/bin/sh\ncat /dev/zero > \"$WINEPREFIX/big\"\n", true);
        const bool isUp = service.start();
        const QJsonDocument refused = service.json("createBottles", {"real", "big"});
        const bool isClean = TestSupport::waitUntil(
            [&] {
                return service.unfinished("bottles").isEmpty() && service.unfinished("templates").isEmpty();
            },
            10000);
        service.kill();
        TestSupport::runProcess("umount", {"-l", disk});
        QVERIFY(isUp && isClean);
        QCOMPARE(refused["reasons"][0]["code"].toString(), QString("disk-full"));
        QVERIFY2(refused["error"].toString().contains(disk), refused.toJson().constData());
    }

    /// The service, all Wine processes of a bottle or its wineserver die in the midst of work.
    void killedAtRandom() {
        if (QStandardPaths::findExecutable("wine").isEmpty())
            QSKIP("wine-is-not-installed");
        ServiceFixture service;
        QVERIFY(service.start());
        QVERIFY(service.json("createBottles", {"real", ""})["ok"].toBool());
        QCOMPARE(service.error("updateExternalProgram", renamed("0")), QString());
        QRandomGenerator random(rounds(1) > 1 ? QRandomGenerator::global()->generate() : 7);
        QStringList names{"0"};
        for (int round = 0; round < rounds(6); ++round) {
            const QString extra = "extra" + QString::number(round / 2);
            names += QString::number(round + 1);
            service.callLater("updateExternalProgram", renamed(names.last()));
            service.callLater("updateDllOverride",
                              {"real", "winhttp", round % 2 ? "native" : "builtin", false});
            service.callLater("setDPI", {"real", 96 + round % 100});
            service.callLater(round % 2 ? "delete" : "createBottles",
                              round % 2 ? QVariantList{extra} : QVariantList{extra, ""});
            QTest::qWait(random.bounded(400));
            if (round % 3 != 2) {
                service.kill();
                QVERIFY(service.start());
            } else {
                for (const Processes::Entry& process : Processes().ofBottle(service.bottlePath("real"))) {
                    if (round % 2 == 0 || process.executable.startsWith("wineserver"))
                        ::kill(process.pid, SIGKILL);
                }
            }
            // Waits behind what is still queued for the bottle.
            service.call("killProgram", {"real", "none"});
            const QJsonArray listed = service.json("list").array();
            for (const QJsonValue& bottle : listed)
                QCOMPARE(service.error("get", {bottle.toString()}), QString());
            QVERIFY(listed.contains("real"));
            QVERIFY2(names.contains(nameOf(service)), qPrintable(nameOf(service)));
            names = QStringList{nameOf(service), names.last()};
        }
        // The last word is heard, by the registry too, and nothing is left of the work before.
        QCOMPARE(service.error("setDPI", {"real", 144}), QString());
        service.call("killWineServer", {"real"});
        QTRY_VERIFY(TestSupport::readFile(service.bottlePath("real") + "/user.reg")
                        .contains("\"LogPixels\"=dword:00000090"));
        QTRY_COMPARE_WITH_TIMEOUT(service.unfinished("bottles"), QStringList(), 30000);
        QTRY_COMPARE(
            QDir(service.bottlePath("real")).entryList({"*cellarix-new"}, QDir::Files | QDir::Hidden),
            QStringList());
    }
};

QTEST_GUILESS_MAIN(ServiceFaultsTest)
#include "ServiceFaultsTest.moc"
