#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>
#include <QtTest>

#include "ServiceFixture.h"

namespace {

QJsonArray arrayOf(const QDBusMessage& reply) {
    return QJsonDocument::fromJson(reply.arguments().value(0).toString().toUtf8()).array();
}

QStringList column(const QJsonArray& array, const QString& key) {
    QStringList values;
    for (const QJsonValue& value : array)
        values += value.toObject()[key].toString();
    values.sort();
    return values;
}

}  // namespace

/// What an installer leaves in a bottle, found by the service.
class tst_ServicePrograms : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void installed() {
        for (const char* tool : {"wine", "makensis"}) {
            if (QStandardPaths::findExecutable(tool).isEmpty())
                QSKIP("wine-or-makensis-is-not-installed");
        }
        ServiceFixture service;
        QVERIFY(QDir().mkpath(service.home() + "/Desktop"));
        QVERIFY(service.start());
        QVERIFY(
            service.call("createBottles", {"b", ""}).arguments().value(0).toString().contains("\"ok\":true"));
        const qint64 before = QDateTime::currentSecsSinceEpoch();
        QVERIFY(arrayOf(service.call("listBottlesAllPrograms", {"b"})).isEmpty());

        QTemporaryDir work;
        QFile script(work.path() + "/setup.nsi");
        QVERIFY(script.open(QIODevice::WriteOnly));
        script.write(
            "\xef\xbb\xbfUnicode true\nTarget amd64-unicode\nName x\nOutFile setup.exe\nSilentInstall "
            "silent\n"
            "RequestExecutionLevel user\nInstallDir \"$PROGRAMFILES64\\应用 程序\"\nSection\nSetOutPath "
            "$INSTDIR\n"
            "File window64.exe\nFile /oname=主程序.exe window64.exe\nFile /oname=AppUpdater.exe "
            "window64.exe\n"
            "File /oname=Own.dll window64.exe\nWriteUninstaller $INSTDIR\\uninst.exe\n"
            "CreateShortCut \"$DESKTOP\\主程序.lnk\" \"$INSTDIR\\主程序.exe\" '--mode \"a b\"'\n"
            "CreateDirectory $SMPROGRAMS\\App\nCreateShortCut $SMPROGRAMS\\App\\主程序.lnk "
            "$INSTDIR\\主程序.exe '--mode \"a b\"'\n"
            "CreateShortCut $SMPROGRAMS\\App\\Uninstall.lnk $INSTDIR\\uninst.exe\n"
            "WriteRegStr HKCU Software\\Classes\\.cxt '' Cx.Doc\n"
            "WriteRegStr HKCU Software\\Classes\\Cx.Doc '' '文档'\n"
            "WriteRegStr HKLM Software\\Classes\\Cx.Doc\\shell\\open\\command '' "
            "'\"$INSTDIR\\主程序.exe\" \"%1\"'\nSectionEnd\nSection "
            "Uninstall\nSectionEnd\n");
        script.close();
        QVERIFY(QFile::copy(SAMPLE_PROGRAM, work.path() + "/window64.exe"));
        QProcess makensis;
        makensis.setWorkingDirectory(work.path());
        makensis.start("makensis", {"-V1", "setup.nsi"});
        QVERIFY(makensis.waitForFinished(60000));
        QCOMPARE(makensis.exitCode(), 0);
        QCOMPARE(service.call("run_command", {"b", '"' + work.path() + "/setup.exe\" /S"}).errorMessage(),
                 QString());

        const QString path = "C:\\Program Files\\应用 程序\\主程序.exe";
        QJsonArray added;
        service.signalLog.clear();
        const auto scan = [&] {
            if (added.isEmpty())
                added = arrayOf(service.call("scanApplicationLinks", {"b", before, true}));
            return !added.isEmpty();
        };
        QTRY_VERIFY_WITH_TIMEOUT(scan(), 60000);
        QCOMPARE(column(added, "path"), QStringList{path});
        QCOMPARE(column(added, "arguments"), QStringList{"--mode \"a b\""});
        QCOMPARE(column(added, "folder"), QStringList{"C:\\Program Files\\应用 程序"});
        QTRY_COMPARE(service.signalLog.size(), 1);
        QVERIFY(service.signalLog[0].startsWith("program_added(b, "));
        const QString icon = added[0].toObject()["icon"].toString();
        QVERIFY2(icon.isEmpty() || QFileInfo(icon).isFile(), qPrintable(icon));
        QVERIFY(arrayOf(service.call("scanApplicationLinks", {"b", before, true})).isEmpty());
        QVERIFY(arrayOf(service.call("scanApplicationLinks", {"b", before + 3600, true})).isEmpty());

        // The shortcut on the user's desktop goes with the bottle.
        QVERIFY(QDir(service.home() + "/Desktop").isEmpty());
        QVERIFY(QFileInfo::exists(service.bottlePath("b") + "/drive_c/users/Public/Desktop/主程序.lnk"));

        const QJsonArray all = arrayOf(service.call("listBottlesAllPrograms", {"b"}));
        QCOMPARE(column(all, "name"), QStringList({"window64", "主程序"}));
        const QJsonObject found = all[1].toObject();
        QCOMPARE(found["auto_discovered"].toBool(), true);
        QCOMPARE(column(arrayOf(service.call("listAllPrograms")), "path"), QStringList{path});
        QCOMPARE(service.call("getExternalProgramsDllList", {"b"}).arguments()[0].toString(),
                 QString("[\"Own\"]"));
        QCOMPARE(service.call("getExternalProgramsUpdateExes", {"b"}).arguments()[0].toString(),
                 QString("[\"AppUpdater.exe\"]"));

        // Nothing of it reached the desktop by itself.
        for (const char* place : {"/data/applications", "/data/mime", "/data/desktop-directories"})
            QVERIFY2(!QFileInfo::exists(service.home() + place), place);

        // What it registered is known once Wine has written its registry, and exported when somebody asks.
        const QString associations = service.bottlePath("b") + "/assosiate.json";
        const auto rescan = [&] {
            service.call("scanApplicationLinks", {"b", before, true});
            return QFileInfo::exists(associations);
        };
        QTRY_VERIFY_WITH_TIMEOUT(rescan(), 60000);
        QVERIFY(
            service.call("exportFileAssociations", {"b", QStringList{".no"}}).errorMessage().contains(".no"));
        QCOMPARE(service.call("exportFileAssociations", {"b", QStringList{".cxt"}}).errorMessage(),
                 QString());
        const QString entered = added[0].toObject()["id"].toString();
        QCOMPARE(service.call("createDesktopEntry", {"b", entered}).errorMessage(), QString());
        const QString menu = service.home() + "/data/applications";
        QTRY_VERIFY(QFileInfo::exists(menu + "/mimeinfo.cache"));
        const QStringList entries = QDir(menu).entryList({"*.desktop"});
        QCOMPARE(entries.size(), 2);
        for (const QString& entry : entries)
            QCOMPARE(QProcess::execute("desktop-file-validate", {menu + '/' + entry}), 0);
        QTRY_VERIFY(QFileInfo::exists(service.home() + "/data/mime/application/x-cellarix-cxt.xml"));
        QCOMPARE(QDir(service.home() + "/Desktop").entryList({"*.desktop"}).size(), 1);

        // A client adopts what was found, and removes what was entered.
        const QString record = QJsonDocument(found).toJson(QJsonDocument::Compact);
        QCOMPARE(service.call("updateExternalProgram", {"b", record}).errorMessage(), QString());
        QVERIFY(!arrayOf(service.call("listBottlesAllPrograms", {"b"})).contains(found));
        service.call("removeExternalProgram", {"b", added[0].toObject()["id"].toString()});
        QVERIFY(!QFileInfo::exists(service.bottlePath("b") + "/icons/" +
                                   added[0].toObject()["id"].toString() + ".png"));
        QCOMPARE(QDir(menu).entryList({"*.desktop"}).size(), 1);
        QCOMPARE(service.call("delete", {"b"}).errorMessage(), QString());
        QVERIFY(QDir(menu).entryList({"*.desktop"}).isEmpty());
        QTRY_VERIFY(!QFileInfo::exists(service.home() + "/data/mime/application/x-cellarix-cxt.xml"));
        QVERIFY(!service.call("scanApplicationLinks", {"none", before, true}).errorMessage().isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_ServicePrograms)
#include "tst_serviceprograms.moc"
