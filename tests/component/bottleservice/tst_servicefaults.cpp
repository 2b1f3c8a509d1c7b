#include <signal.h>

#include <QDBusPendingCallWatcher>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QXmlStreamReader>
#include <QtTest>

#include "ServiceFixture.h"
#include "bottleservice/wine/Processes.h"

namespace {

const QString Id = "7b1b4b1e-0000-4000-8000-000000000001";
const QStringList Texts = {"",
                           "real",
                           "..",
                           "../outside",
                           "/etc",
                           "public/../real",
                           QString(300, 'x'),
                           QString::fromUtf8("\u202e\u0001\n名"),
                           "{\"id\":\"" + Id + "\",\"path\":\"../../outside/x\"}",
                           "[[[",
                           "{}",
                           QString(5 * 1024 * 1024, '{'),
                           Id,
                           "; touch /tmp/x $(touch /tmp/x) `id` | cat",
                           "-rf",
                           "%s%n",
                           "win10",
                           "gl"};

int rounds(int usual) {
    const int wanted = qEnvironmentVariableIntValue("CELLARIX_FAULT_ROUNDS");
    return wanted > 0 ? wanted : usual;
}

/// Every method of an interface, with the signatures of its arguments.
QMap<QString, QStringList> methodsOf(const QString& xml, const QString& wanted) {
    QMap<QString, QStringList> methods;
    QXmlStreamReader reader(xml);
    QString interface, method;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        const auto attributes = reader.attributes();
        const QString name = attributes.value("name").toString();
        if (reader.name() == "interface")
            interface = name;
        else if (reader.name() == "method" || reader.name() == "signal")
            method = reader.name() == "method" && interface == wanted ? name : QString();
        if (!method.isEmpty() && reader.name() == "method")
            methods[method];
        if (!method.isEmpty() && reader.name() == "arg" && attributes.value("direction") != "out")
            methods[method] += attributes.value("type").toString();
    }
    return methods;
}

QVariant argument(const QString& type, QRandomGenerator* random) {
    const QString text = Texts[random->bounded(Texts.size())];
    const qint64 numbers[] = {0, -1, 96, std::numeric_limits<qint64>::max(), std::numeric_limits<int>::min()};
    const qint64 number = numbers[random->bounded(5)];
    return type == "b"    ? QVariant(true)
           : type == "i"  ? QVariant(int(number))
           : type == "x"  ? QVariant(number)
           : type == "as" ? QVariant(QStringList{text, ".txt"})
                          : QVariant(text);
}

/// Paths, sizes and links of all that lies in the home but the service's own data.
QStringList census(const QString& home) {
    QStringList all;
    QDirIterator it(home, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QFileInfo info(it.next());
        if (!info.filePath().startsWith(home + "/data/lumora-wine-bottles"))
            all += info.filePath() + ' ' + QString::number(info.isDir() ? 0 : info.size());
    }
    all.sort();
    return all;
}

void write(const QString& path, const QByteArray& content) {
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

}  // namespace

/// What must never cost anybody a bottle: hostile callers, a disk that fails, a kill at any moment. Longer
/// runs by CELLARIX_FAULT_ROUNDS.
class tst_ServiceFaults : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hostileCallers();
    void failingDisk();
    void killedAtRandom();

private:
    static QString nameOf(const ServiceFixture& service) {
        const QString text = service.call("get", {"real"}).arguments().value(0).toString();
        return QJsonDocument::fromJson(text.toUtf8())["External_Programs"][Id]["name"].toString();
    }
    static QString rename(const QString& name) {
        return "{\"id\":\"" + Id + "\",\"path\":\"C:\\\\a.exe\",\"name\":\"" + name + "\"}";
    }
};

void tst_ServiceFaults::hostileCallers() {
    ServiceFixture service;
    service.variables["PATH"] = "/nowhere";  // no Wine: whatever gets through makes no prefix
    QVERIFY(service.start());
    write(service.bottlePath("real") + "/bottle.yml", "Runner: none\n");
    write(service.home() + "/outside/bottle.yml", "Runner: none\n");
    QVERIFY(QDir().mkpath(service.home() + "/Desktop"));
    QVERIFY(service.call("updateExternalProgram", {"real", rename("n")}).errorMessage().isEmpty());
    const QStringList before = census(service.home());
    const QMap<QString, QStringList> methods =
        methodsOf(service.introspect("/com/lumora/Manager/Bottles"), "com.lumora.Manager.Bottles");
    QVERIFY(methods.size() > 40);
    QRandomGenerator random(1);
    for (int round = 0; round < rounds(6); ++round) {
        for (auto method = methods.begin(); method != methods.end(); ++method) {
            QVariantList arguments;
            for (const QString& type : method.value())
                arguments += argument(type, &random);
            if (method.key() == "delete")
                arguments[0] = "another";
            else if (round % 2 && !arguments.isEmpty() && method.value()[0] == "s")
                arguments[0] = "real";
            const QDBusMessage reply = service.call(method.key(), arguments);
            const bool isAnswer = reply.type() == QDBusMessage::ReplyMessage ||
                                  reply.errorName().startsWith("com.lumora.Error.");
            QVERIFY2(isAnswer, qPrintable(method.key() + ": " + reply.errorMessage()));
            QVERIFY2(reply.errorMessage().size() < 1500, qPrintable(method.key()));
            // A wrong signature is told as such.
            arguments += QVariant(1.5);
            QCOMPARE(service.call(method.key(), arguments).errorName(), "com.lumora.Error.InvalidArgs");
        }
    }
    QVERIFY(service.isOnBus());
    QCOMPARE(nameOf(service).isEmpty(), false);
    QStringList after = census(service.home());
    // The one thing that a caller could rightly ask for.
    for (const QString& entry : qAsConst(after)) {
        if (!before.contains(entry))
            QVERIFY2(entry.contains("/data/applications") || entry.contains("/data/mime") ||
                         entry.contains("/Desktop/cellarix-"),
                     qPrintable(entry));
    }
    for (const QString& entry : before)
        QVERIFY2(after.contains(entry), qPrintable(entry));
}

/// Each system call of an update fails in turn.
void tst_ServiceFaults::failingDisk() {
    if (QStandardPaths::findExecutable("strace").isEmpty())
        QSKIP("needs-strace");
    ServiceFixture service;
    QVERIFY(service.start());
    const QString path = service.bottlePath("real");
    write(path + "/bottle.yml", "Runner: none\nOwn: [1, 2]\n");
    QVERIFY(service.call("updateExternalProgram", {"real", rename("0")}).errorMessage().isEmpty());
    int failures = 0;
    for (const char* call : {"openat", "write", "fsync", "rename"}) {
        for (int number = 1; number <= 2; ++number) {
            QProcess tracer;
            tracer.start("strace",
                         {"-f", "-o", service.home() + "/trace", "-P", path + "/.bottle.yml.cellarix-new",
                          "-e", QString("inject=%1:error=ENOSPC:when=%2").arg(call).arg(number), "-p",
                          QString::number(service.process().processId())});
            const auto isAttached = [&] {
                QFile status(QString("/proc/%1/status").arg(service.process().processId()));
                return tracer.state() == QProcess::NotRunning ||
                       (status.open(QIODevice::ReadOnly) && !status.readAll().contains("TracerPid:\t0\n"));
            };
            QTRY_VERIFY(isAttached());
            if (tracer.state() == QProcess::NotRunning)
                QSKIP("tracing-is-not-allowed-here");
            const QString old = nameOf(service);
            const QString wanted = QString("%1-%2").arg(call).arg(number);
            const QDBusMessage reply = service.call("updateExternalProgram", {"real", rename(wanted)});
            tracer.terminate();
            tracer.waitForFinished();
            const bool failed = !reply.errorMessage().isEmpty();
            failures += failed;
            QCOMPARE(nameOf(service), failed ? old : wanted);
            QCOMPARE(QDir(path).entryList(QDir::Files | QDir::Hidden),
                     QStringList({"bottle.yml", "launch.json"}));
        }
    }
    QVERIFY2(failures >= 4, qPrintable(QString::number(failures)));
    QFile file(path + "/bottle.yml");
    QVERIFY(file.open(QIODevice::ReadOnly) && file.readAll().contains("Own:"));
}

/// The service, all Wine processes of a bottle or its wineserver die in the midst of work.
void tst_ServiceFaults::killedAtRandom() {
    if (QStandardPaths::findExecutable("wine").isEmpty())
        QSKIP("wine-is-not-installed");
    ServiceFixture service;
    QVERIFY(service.start());
    QVERIFY(
        service.call("createBottles", {"real", ""}).arguments().value(0).toString().contains("\"ok\":true"));
    QVERIFY(service.call("updateExternalProgram", {"real", rename("0")}).errorMessage().isEmpty());
    QRandomGenerator random(rounds(1) > 1 ? QRandomGenerator::global()->generate() : 7);
    QStringList names{"0"};
    for (int round = 0; round < rounds(6); ++round) {
        const QString extra = "extra" + QString::number(round / 2);
        names += QString::number(round + 1);
        service.callLater("updateExternalProgram", {"real", rename(names.last())});
        service.callLater("updateDllOverride", {"real", "winhttp", round % 2 ? "native" : "builtin", false});
        service.callLater("setDPI", {"real", 96 + round % 100});
        service.callLater(round % 2 ? "delete" : "createBottles",
                          round % 2 ? QVariantList{extra} : QVariantList{extra, ""});
        QTest::qWait(random.bounded(400));
        if (round % 3 != 2) {
            service.kill();
            QVERIFY(service.start());
        } else {
            const bool onlyServer = round % 2;
            for (const Processes::Entry& process : Processes().ofBottle(service.bottlePath("real"))) {
                if (!onlyServer || process.executable.startsWith("wineserver"))
                    ::kill(process.pid, SIGKILL);
            }
        }
        // Waits behind what is still queued for the bottle.
        service.call("killProgram", {"real", "none"});
        const QString listed = service.call("list").arguments().value(0).toString();
        for (const QJsonValue& bottle : QJsonDocument::fromJson(listed.toUtf8()).array())
            QCOMPARE(service.call("get", {bottle.toString()}).errorMessage(), QString());
        QVERIFY(listed.contains("\"real\""));
        QVERIFY2(names.contains(nameOf(service)), qPrintable(nameOf(service)));
        names = QStringList{nameOf(service), names.last()};
    }
    // The last word is heard, by the registry too, and nothing is left of the work before.
    QCOMPARE(service.call("setDPI", {"real", 144}).errorMessage(), QString());
    service.call("killWineServer", {"real"});
    const auto dpi = [&] {
        QFile registry(service.bottlePath("real") + "/user.reg");
        return registry.open(QIODevice::ReadOnly) &&
               registry.readAll().contains("\"LogPixels\"=dword:00000090");
    };
    QTRY_VERIFY(dpi());
    const auto leftovers = [&] {
        return QDir(service.bottlePath("."))
                   .entryList({".creating-*", ".deleting-*"}, QDir::Dirs | QDir::Hidden) +
               QDir(service.bottlePath("real")).entryList({"*cellarix-new"}, QDir::Files | QDir::Hidden);
    };
    QTRY_COMPARE_WITH_TIMEOUT(leftovers(), QStringList(), 30000);
}

QTEST_GUILESS_MAIN(tst_ServiceFaults)
#include "tst_servicefaults.moc"
