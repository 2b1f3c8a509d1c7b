#include <QStandardPaths>
#include <QtTest>

#include "ServiceFixture.h"

namespace {

QStringList column(const QJsonArray& array, const QString& key) {
    QStringList values;
    for (const QJsonValue& value : array)
        values += value.toObject()[key].toString();
    values.sort();
    return values;
}

}  // namespace

/// What an installer leaves in a bottle, found by the service.
class ServiceProgramsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void installed() {
        for (const char* tool : {"wine", "makensis"}) {
            if (QStandardPaths::findExecutable(tool).isEmpty())
                QSKIP("wine-or-makensis-is-not-installed");
        }
        ServiceFixture service;
        QVERIFY(service.start());
        QVERIFY(service.json("createBottles", {"b", ""})["ok"].toBool());
        const auto listed = [&service](const QString& method, const QVariantList& arguments) {
            return service.json(method, arguments).array();
        };
        const qint64 before = QDateTime::currentSecsSinceEpoch();
        QVERIFY(listed("listBottlesAllPrograms", {"b"}).isEmpty());

        const QString setup = service.home().write(
            "work/setup.nsi", TestSupport::readFile(TEST_SOURCE_DIR "/tests/data/service/registering.nsi"));
        const QString work = QFileInfo(setup).path();
        QVERIFY(QFile::copy(SAMPLE_PROGRAM, work + "/window64.exe"));
        QVERIFY(TestSupport::runProcess("makensis", {"-V1", "-INPUTCHARSET", "UTF8", setup}).ok());
        QCOMPARE(service.error("run_command", {"b", '"' + work + "/setup.exe\" /S"}), QString());

        const QString path = "C:\\Program Files\\应用 程序\\主程序.exe";
        QJsonArray added;
        service.signalLog.clear();
        const auto scan = [&] {
            if (added.isEmpty())
                added = listed("scanApplicationLinks", {"b", before, true});
            return !added.isEmpty();
        };
        QTRY_VERIFY_WITH_TIMEOUT(scan(), 60000);
        QCOMPARE(column(added, "path"), QStringList{path});
        QCOMPARE(column(added, "arguments"), QStringList{"--mode \"a b\""});
        QCOMPARE(column(added, "folder"), QStringList{"C:\\Program Files\\应用 程序"});
        const auto changes = [&] { return service.signalLog.filter("program_"); };
        QTRY_COMPARE(changes().size(), 1);
        QVERIFY(changes()[0].startsWith("program_added(b, "));
        const QString entered = added[0].toObject()["id"].toString();
        const QString icon = added[0].toObject()["icon"].toString();
        QVERIFY2(icon.isEmpty() || QFileInfo(icon).isFile(), qPrintable(icon));
        QVERIFY(listed("scanApplicationLinks", {"b", before, true}).isEmpty());
        QVERIFY(listed("scanApplicationLinks", {"b", before + 3600, true}).isEmpty());

        // The shortcut on the user's desktop goes with the bottle.
        QVERIFY(QDir(service.home().desktop()).isEmpty());
        QVERIFY(QFileInfo::exists(service.bottlePath("b") + "/drive_c/users/Public/Desktop/主程序.lnk"));

        const QJsonArray all = listed("listBottlesAllPrograms", {"b"});
        QCOMPARE(column(all, "name"), QStringList({"window64", "主程序"}));
        const QJsonObject found = all[1].toObject();
        QCOMPARE(found["auto_discovered"].toBool(), true);
        QCOMPARE(column(listed("listAllPrograms", {}), "path"), QStringList{path});
        QCOMPARE(service.text("getExternalProgramsDllList", {"b"}), "[\"Own\"]");
        QCOMPARE(service.text("getExternalProgramsUpdateExes", {"b"}), "[\"AppUpdater.exe\"]");

        // Nothing of it reached the desktop by itself.
        for (const char* place : {"/applications", "/mime", "/desktop-directories"})
            QVERIFY2(!QFileInfo::exists(service.home().data() + place), place);

        // What it registered is known once Wine has written its registry, and exported when somebody asks.
        const QString associations = service.bottlePath("b") + "/assosiate.json";
        const auto rescan = [&] {
            service.call("scanApplicationLinks", {"b", before, true});
            return QFileInfo::exists(associations);
        };
        QTRY_VERIFY_WITH_TIMEOUT(rescan(), 60000);
        QVERIFY(service.error("exportFileAssociations", {"b", QStringList{".no"}}).contains(".no"));
        QCOMPARE(service.error("exportFileAssociations", {"b", QStringList{".cxt"}}), QString());
        QCOMPARE(service.error("createDesktopEntry", {"b", entered}), QString());
        const QString menu = service.home().data() + "/applications";
        QTRY_VERIFY(QFileInfo::exists(menu + "/mimeinfo.cache"));
        const QStringList entries = QDir(menu).entryList({"*.desktop"});
        QCOMPARE(entries.size(), 2);
        for (const QString& entry : entries)
            QCOMPARE(QProcess::execute("desktop-file-validate", {menu + '/' + entry}), 0);
        QTRY_VERIFY(QFileInfo::exists(service.home().data() + "/mime/application/x-cellarix-cxt.xml"));
        QCOMPARE(QDir(service.home().desktop()).entryList({"*.desktop"}).size(), 1);

        // A client adopts what was found, and removes what was entered.
        const QString record = QJsonDocument(found).toJson(QJsonDocument::Compact);
        QCOMPARE(service.error("updateExternalProgram", {"b", record}), QString());
        QVERIFY(!listed("listBottlesAllPrograms", {"b"}).contains(found));
        service.call("removeExternalProgram", {"b", entered});
        QVERIFY(!QFileInfo::exists(service.bottlePath("b") + "/icons/" + entered + ".png"));
        QCOMPARE(QDir(menu).entryList({"*.desktop"}).size(), 1);
        QCOMPARE(service.error("delete", {"b"}), QString());
        QVERIFY(QDir(menu).entryList({"*.desktop"}).isEmpty());
        QTRY_VERIFY(!QFileInfo::exists(service.home().data() + "/mime/application/x-cellarix-cxt.xml"));
        QVERIFY(!service.error("scanApplicationLinks", {"none", before, true}).isEmpty());
    }
};

QTEST_GUILESS_MAIN(ServiceProgramsTest)
#include "ServiceProgramsTest.moc"
