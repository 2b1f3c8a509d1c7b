#include <QtTest>

#include "ServiceFixture.h"
#include "bottleservice/wine/ProcessEnd.h"
#include "support/Table.h"

namespace {

const char Id[] = "11111111-2222-3333-4444-555555555555";
const QByteArray Program = "Template: t\nExternal_Programs:\n  " + QByteArray(Id) + ":\n    id: " + Id +
                           "\n    path: C:\\\\a.exe\n    name: a\n";

}  // namespace

/// Bottles that launches leave behind: what lets them go, and what keeps them. Plain files stand for Wine's.
class ServiceCleanUpTest : public QObject {
    Q_OBJECT

    ServiceFixture m_service;

    QJsonObject cleanUp(const QString& bottle, const QString& ignored = {}) {
        const QDBusMessage reply = m_service.call("deleteIfUnused", {bottle, ignored}, "CleanUp");
        return QJsonDocument::fromJson(reply.arguments().value(0).toString().toUtf8()).object();
    }

private Q_SLOTS:
    void initTestCase() {
        QVERIFY(m_service.start());
        m_service.write("templates/t/drive_c/windows/system32/own.dll", "own");
        m_service.write("templates/t/drive_c/windows/win.ini", "[x]");
    }

    void bottles_data() {
        // A file of the bottle, its content; what bottle.yml says.
        const TestSupport::Table<QString, QByteArray, QByteArray, QString> row("file", "content", "settings",
                                                                               "reason");
        const QByteArray plain = "Template: t\n";
        row("nothing", "", "", plain, "");
        row("as in the template", "drive_c/windows/win.ini", "[x]", plain, "");
        row("registry, logs, temporary files", "drive_c/windows/Temp/a.txt", "x", plain, "");
        row("library of Wine", "drive_c/windows/system32/late.dll",
            QByteArray(0x40, 'x') + "Wine builtin DLL", plain, "");
        row("the set-up's own entry", "", "", Program, "");
        row("unknown template", "", "", "Template: u\n", "its files are not known");
        row("no template", "", "", "Name: b\n", "its files are not known");
        row("own directory of the bottle", "drive_d/data.bin", "x", plain, "it has files of its own");
        row("changed file", "drive_c/windows/win.ini", "[y]", plain, "it has files of its own");
        row("library", "drive_c/windows/system32/new.dll", "x", plain, "it has files of its own");
        row("program", "drive_c/App/App.exe", "MZ", plain, "it has files of its own");
        row("installation", ".before-install/journal.json", "{\"id\":\"1\"}", plain,
            "something is being installed into it");
    }
    void bottles() {
        QFETCH(QString, file);
        QFETCH(QByteArray, content);
        QFETCH(QByteArray, settings);
        QFETCH(QString, reason);
        const QString name = QTest::currentDataTag();
        const auto write = [&](const QString& path, const QByteArray& text) {
            m_service.write("bottles/" + name + '/' + path, text);
        };
        write("bottle.yml", settings);
        write("user.reg", "changed");
        write("logs/wine.txt", "x");
        write("drive_c/windows/system32/own.dll", "own");
        write("drive_c/windows/win.ini", "[x]");
        if (!file.isEmpty())
            write(file, content);
        // What the user has elsewhere is not the bottle's.
        const QString documents = m_service.home().write("Documents/mine.txt", "x");
        const QString users = m_service.bottlePath(name) + "/drive_c/users/me";
        QVERIFY(QDir().mkpath(users) && QFile::link(QFileInfo(documents).path(), users + "/Documents"));

        const QJsonObject result = cleanUp(name, Id);
        QCOMPARE(result["deleted"].toBool(), reason.isEmpty());
        QCOMPARE(result["reason"].toString(), reason);
        QCOMPARE(QFileInfo::exists(m_service.bottlePath(name)), !reason.isEmpty());
        QTRY_COMPARE(m_service.signalLog.contains("bottles_deleted(" + name + ')'), reason.isEmpty());
        QVERIFY(QFileInfo::exists(documents));
        // A program that was found is entered, and is one from then on.
        const bool isProgram = file.endsWith(".exe");
        QCOMPARE(result["programs"].toArray().size(), int(isProgram));
        if (isProgram)
            QCOMPARE(cleanUp(name, Id)["reason"].toString(), QString("it has programs"));
    }

    void removedPackages() {
        m_service.write("bottles/packed/bottle.yml", Program);
        m_service.write("bottles/packed/.package/origin.json",
                        R"({"format":1,"package":"com.example.gone"})");
        const auto found = [this] {
            return m_service.call("bottlesOfRemovedPackages", {}, "CleanUp").arguments().value(0).toString();
        };
        QCOMPARE(found(),
                 QString(R"([{"bottle":"packed","lost":["%1"],"package":"com.example.gone"}])").arg(Id));
        m_service.write("bottles/packed/dosdevices/c:/a.exe", "MZ");
        QVERIFY(found().contains(R"("lost":[])"));
        // Nobody loses the work of who has the bottle for itself.
        const qint64 pid = QCoreApplication::applicationPid();
        m_service.write("running/1.start",
                        QString(R"({"bottle":"packed","name":"p","kind":"packing","pid":%1,"start":"%2"})")
                            .arg(pid)
                            .arg(ProcessEnd::startTime(pid_t(pid)))
                            .toUtf8());
        QCOMPARE(m_service.call("killWineServer", {"packed"}).errorMessage(), QString());
        QCOMPARE(m_service.call("delete", {"packed"}).errorName(), QString("com.lumora.Error.Busy"));
        m_service.write("running/1.start", "");
        const QString icon = m_service.home().write(
            QString("Desktop/%1.desktop").arg(Id),
            "[Desktop Entry]\nExec=/opt/apps/com.example.gone/files/run " + QByteArray(Id));
        const QString moved = m_service.home().path() + "/Moved/" + Id + ".desktop";
        const QString other = m_service.home().write("x.desktop", TestSupport::readFile(icon));
        QVERIFY(QDir().mkpath(QFileInfo(moved).path()) && QFile::copy(icon, moved));
        m_service.write("bottles/packed/.package/desktop-icons", (moved + '\n' + other + '\n').toUtf8());
        QCOMPARE(m_service.call("keepBottle", {"packed"}, "CleanUp").errorMessage(), QString());
        QVERIFY(!QFileInfo::exists(icon) && !QFileInfo::exists(moved) && QFileInfo::exists(other));
        QCOMPARE(found(), QString("[]"));
        QCOMPARE(QDir(m_service.bottlePath("packed")).entryList({".pack*"}, QDir::AllEntries | QDir::Hidden),
                 QStringList());
    }

    void whoIsAsked() {
        m_service.write("bottles/public/x/bottle.yml", "Template: t\n");
        m_service.write("bottles/public/x/drive_c/x/y", "");
        QCOMPARE(cleanUp("public/x")["reason"].toString(), QString("others share it"));
        m_service.write("bottles/entered/bottle.yml", Program);
        QCOMPARE(cleanUp("entered")["reason"].toString(), QString("it has programs"));
        const auto error = [this](const char* name) {
            return m_service.call("deleteIfUnused", {name, ""}, "CleanUp").errorName();
        };
        QCOMPARE(error("none"), QString("com.lumora.Error.NoSuchBottle"));
        QCOMPARE(error("../x"), QString("com.lumora.Error.InvalidArgs"));
    }
};

QTEST_GUILESS_MAIN(ServiceCleanUpTest)
#include "ServiceCleanUpTest.moc"
