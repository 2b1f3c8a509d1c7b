#include <sys/stat.h>
#include <unistd.h>

#include <QDirIterator>
#include <QtTest>

#include "ServiceFixture.h"
#include "bottleservice/wine/Runners.h"
#include "bottleservice/wine/Templates.h"
#include "support/Table.h"
#include "support/ZipFile.h"

using TestSupport::zipOf;

/// Bottles of portable programs: what is copied, and what must never come out of an archive. A script stands
/// for Wine, which has nothing to run.
class ServicePortableTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ServiceFixture> m_service;

    QString source(const QString& name) const { return m_service->home().path() + '/' + name; }
    QJsonObject import(const QString& path) const {
        const QDBusMessage reply = m_service->call("importPortable", {path}, "Backup");
        return QJsonDocument::fromJson(reply.arguments().value(0).toString().toUtf8()).object();
    }
    static QString codeOf(const QJsonObject& answer) {
        return answer["reasons"].toArray()[0].toObject()["code"].toString();
    }
    /// Relative paths of what was copied.
    static QStringList filesIn(const QString& directory) {
        QStringList files;
        QDirIterator walk(directory, QDir::Files | QDir::System | QDir::Hidden, QDirIterator::Subdirectories);
        while (walk.hasNext())
            files += walk.next().mid(directory.size() + 1);
        files.sort();
        return files;
    }
    QStringList bottles() const {
        return QDir(m_service->dataDir() + "/bottles")
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

private Q_SLOTS:
    void initTestCase() {
        m_service = std::make_unique<ServiceFixture>();
        m_service->variables["PATH"] = "/nowhere";
        for (const char* file : {"ntdll.dll", "kernel32.dll"})
            m_service->write(QString("runners/w32/lib/wine/i386-windows/") + file, "");
        for (const QString& name : {QString("w"), QString("w32")}) {
            const QString program = m_service->write("runners/" + name + "/bin/wine", "#!/bin/sh\n", true);
            const QString original = "templates/" + Templates::keyOf({name, program, program});
            for (const char* file :
                 {"/system.reg", "/user.reg", "/dosdevices/c:", "/drive_c/windows/system32/kernel32.dll"})
                m_service->write(original + file, "WINE REGISTRY Version 2\n\n#arch=win64\n");
        }
        QVERIFY(m_service->start());
    }

    void folder() {
        m_service->home().write("My App/app.exe", "MZ");
        m_service->home().write("My App/AppUpdate.exe", "MZ");
        m_service->home().write("My App/data/a.dat", "data");
        QVERIFY(QFile::link("data/a.dat", source("My App/inner")));
        QVERIFY(QFile::link("/etc", source("My App/outer")));
        QCOMPARE(::mkfifo(QFile::encodeName(source("My App/pipe")).constData(), 0600), 0);
        for (const char* name : {"portable-MyApp", "portable-MyApp (2)"}) {
            const QJsonObject result = import(source("My App"));
            QVERIFY2(result["ok"].toBool(), QJsonDocument(result).toJson().constData());
            QCOMPARE(result["bottle"].toString(), QString(name));
            QCOMPARE(result["folder"].toString(), QString("C:\\Program Files\\My App"));
            QCOMPARE(result["leftOut"].toArray().size(), 2);
            const QString copy = result["path"].toString() + "/drive_c/Program Files/My App";
            QCOMPARE(filesIn(copy), QStringList({"AppUpdate.exe", "app.exe", "data/a.dat", "inner"}));
            QCOMPARE(TestSupport::readFile(copy + "/inner"), QByteArray("data"));
            const QJsonDocument record = m_service->json("get", {name});
            QCOMPARE(record["Runner"].toString(), QString("w"));
            const QJsonObject program =
                record["External_Programs"].toObject()[result["program"].toString()].toObject();
            QCOMPARE(program["path"].toString(), QString("C:\\Program Files\\My App\\app.exe"));
        }
        QCOMPARE(m_service->unfinished("bottles"), QStringList());
    }

    void archives_data() {
        using Items = QVector<TestSupport::ZipItem>;
        const TestSupport::Table<QByteArray, QString> row("archive", "result");  // the second file, or a code
        const auto with = [](const TestSupport::ZipItem& item) {
            return zipOf(Items{{"app.exe", "MZ"}, item});
        };
        row("plain", with({"z/y.dll", "dll"}), "z/y.dll");
        row("of Windows", with({"z\\y.dll", "dll"}), "z/y.dll");
        row("Chinese", with({"\xca\xfd\xbe\xdd.dat", "d"}), QString::fromUtf8("数据.dat"));
        row("absolute", with({"/tmp/x", "x"}), "bad-archive");
        row("climbs out", with({"a/../../x", "x"}), "bad-archive");
        row("climbs out of Windows", with({"..\\x", "x"}), "bad-archive");
        row("drive", with({"C:\\x", "x"}), "bad-archive");
        row("long", with({QByteArray(300, 'n'), "x"}), "bad-archive");
        row("deep", with({QByteArray("a/").repeated(500) + "x", "x"}), "bad-archive");
        row("link", with({"z", "/etc", 0, 0120777}), "bad-archive");
        row("device", with({"z", "", 0, 0060666}), "bad-archive");
        row("twice", with({"app.exe", "MZ"}), "bad-archive");
        row("file as directory", with({"app.exe/x", "x"}), "cannot-write");
        row("password", with({"z", "xxxxxxxxxxxxxxx", 1}), "protected-archive");
        row("lies small", with({"z", "xxx", 0, 0, 2}), "bad-archive");
        row("bomb", with({"z", "xxx", 0, 0, 0xfffffff0}), "bad-archive");
        row("no program", zipOf({{"a.txt", "x"}}), "no-programs");
        row("cut", with({"z", "xxx"}).left(60), "bad-archive");
        row("no archive", "nothing", "bad-archive");
    }
    void archives() {
        QFETCH(QByteArray, archive);
        QFETCH(QString, result);
        m_service->home().write("a.zip", archive);
        const QStringList before = bottles();
        const QJsonObject answer = import(source("a.zip"));
        if (!answer["ok"].toBool()) {
            QCOMPARE(codeOf(answer), result);
            QTRY_COMPARE(bottles(), before);
        } else {
            const QString copy = answer["path"].toString() + "/drive_c/Program Files/a";
            QCOMPARE(filesIn(copy), QStringList({"app.exe", result}));
        }
        QVERIFY(!QFile::exists("/tmp/x") && !QFile::exists(m_service->dataDir() + "/x"));
    }

    void cancelLeavesNothing() {
        const QStringList before = bottles();
        QFile large(m_service->home().write("Big/app.exe", "MZ"));
        QVERIFY(large.resize(1 << 30));
        QDBusPendingCall call = m_service->callLater("importPortable", {source("Big")}, "Backup");
        m_service->call("cancelBottleCopy", {source("Big")}, "Backup");
        call.waitForFinished();
        const QString text = call.reply().arguments().value(0).toString();
        QVERIFY2(text.contains("\"cancelled\""), qPrintable(text));
        QTRY_COMPARE(bottles(), before);
    }

    void runners() {
        QByteArray program(512, 0);
        program.replace(0, 2, "MZ").replace(0x3c, 1, "\x40").replace(0x40, 4, QByteArray("PE\0\0", 4));
        const QByteArray helper = QByteArray(program).replace(0x44, 2, "\x64\x86");
        program.replace(0x44, 2, "\x4c\x01");
        m_service->home().write("Old/app.exe", program);
        m_service->home().write("Old/unins000.exe", helper);
        m_service->home().write("Old.zip", zipOf({{"a\\app.exe", program}, {"unins000.exe", helper}}));
        for (const char* name : {"Old", "Old.zip"}) {
            const QString bottle = import(source(name))["bottle"].toString();
            QCOMPARE(m_service->json("get", {bottle})["Runner"].toString(), QString("w32"));
        }
    }

    /// Some way into the copy, after there was room enough in bytes.
    void fullDisk() {
        for (int i = 0; i < 100; ++i)
            m_service->home().write(QString("Many/%1.exe").arg(i), "MZ");
        const QString bottles = m_service->dataDir() + "/bottles";
        if (::geteuid() != 0 ||
            !TestSupport::runProcess("mount",
                                     {"-t", "tmpfs", "-o", "size=200m,nr_inodes=60", "tmpfs", bottles})
                 .ok())
            QSKIP("cannot-mount-a-small-file-system-here");
        const QString code = codeOf(import(source("Many")));
        const bool isEmpty = QTest::qWaitFor([this] { return this->bottles().isEmpty(); }, 10000);
        TestSupport::runProcess("umount", {"-l", bottles});
        QCOMPARE(code, QString("disk-full"));
        QVERIFY(isEmpty);
    }

    void refused() {
        m_service->home().write("Deep/app.exe", "MZ");
        m_service->home().write("Deep" + QString("/d").repeated(101) + "/x", "x");
        QCOMPARE(codeOf(import(source("Deep"))), QString("path-too-long"));
        QCOMPARE(codeOf(import(source("missing"))), QString("cannot-read"));
        // The bottles lie in it.
        QCOMPARE(codeOf(import(m_service->home().path())), QString("unfit-folder"));
    }
};

QTEST_GUILESS_MAIN(ServicePortableTest)
#include "ServicePortableTest.moc"
