#include <QDesktopServices>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>
#include <QUuid>
#include <QtTest>

#include "backend/BottleUtils.h"
#include "backend/EmulatorPackage.h"
#include "support/FakeBottleService.h"
#include "support/LogCapture.h"
#include "support/PrivateBus.h"
#include "support/TestHome.h"

using TestSupport::LogCapture;

class BottleUtilsTest : public QObject {
    Q_OBJECT
public Q_SLOTS:
    void remember(const QUrl& url) { opened.append(url.toString()); }

private Q_SLOTS:
    void initTestCase() {
        QDesktopServices::setUrlHandler("file", this, "remember");
        QVERIFY(fake.start());
        root = home.path() + "/b #1";
        home.write("b #1/drive_c/Program Files/App/a.exe", "MZ");
        QVERIFY(QDir().mkpath(root + "/dosdevices"));
        QVERIFY(QFile::link("../drive_c", root + "/dosdevices/c:"));
    }
    void init() {
        opened.clear();
        const QJsonObject windows{
            {"id", "w"}, {"path", "C:\\program files\\app\\A.EXE"}, {"folder", "C:\\program files\\app"}};
        const QJsonObject unixFile{
            {"id", "u"}, {"path", root + "/drive_c/Program Files/App/a.exe"}, {"folder", root}};
        const QJsonObject missing{{"id", "m"}, {"path", "/nonexistent.exe"}};
        fake.setBottle("b",
                       {{"Path", root},
                        {"Runner", "lumora-wine10-stable"},
                        {"External_Programs", QJsonObject{{"w", windows}, {"u", unixFile}, {"m", missing}}}});
        fake.setBottle("homeless", {{"External_Programs", QJsonObject{{"w", windows}}}});
        fake.clearCalls();
    }

    void readers() {
        QCOMPARE(BottleUtils::bottlePath("b"), root);
        QCOMPARE(BottleUtils::bottleRunner("b"), QString("lumora-wine10-stable"));
        QCOMPARE(BottleUtils::bottlePrograms("b").size(), 3);
    }

    void programPath_data() {
        QTest::addColumn<QString>("bottle");
        QTest::addColumn<QString>("id");
        QTest::addColumn<bool>("found");
        QTest::newRow("windows path, other case") << "b"
                                                  << "w" << true;
        QTest::newRow("unix path") << "b"
                                   << "u" << true;
        QTest::newRow("unix path without a file") << "b"
                                                  << "m" << false;
        QTest::newRow("unknown program") << "b"
                                         << "x" << false;
        QTest::newRow("bottle without a directory") << "homeless"
                                                    << "w" << false;
        QTest::newRow("unknown bottle") << "none"
                                        << "w" << false;
    }
    void programPath() {
        QFETCH(QString, bottle);
        QFETCH(QString, id);
        QFETCH(bool, found);
        const LogCapture log;
        const QString path = BottleUtils::programPath(bottle, id);
        QCOMPARE(path.isEmpty(), !found);
        QCOMPARE(QFileInfo(path).isFile(), found);
    }

    void opening() {
        const LogCapture log;
        BottleUtils::openDriveC("b");
        BottleUtils::openProgramFolder("b", "w");
        BottleUtils::openProgramFolder("b", "u");
        const auto url = [](const QString& path) { return QUrl::fromLocalFile(path).toString(); };
        QTRY_COMPARE(opened, (QStringList{url(root + "/drive_c"),
                                          url(root + "/dosdevices/c:/Program Files/App"), url(root)}));
        BottleUtils::openDriveC("none");
        BottleUtils::openProgramFolder("homeless", "w");
        BottleUtils::openProgramFolder("b", "x");
        QTRY_VERIFY(log.contains(QtWarningMsg, "program x not in bottles: b"));
        QCOMPARE(opened.size(), 3);
    }

    void deleteEntry_data() {
        QTest::addColumn<QJsonObject>("after");  // the bottle's record once the program is gone
        QTest::addColumn<bool>("flag");
        QTest::addColumn<bool>("deleted");
        const QJsonObject empty{{"Path", "/nonexistent"}, {"External_Programs", QJsonObject()}};
        const QJsonObject more{{"External_Programs", QJsonObject{{"o", QJsonObject{{"id", "o"}}}}}};
        QTest::newRow("last one, flag") << empty << true << true;
        QTest::newRow("last one, no flag") << empty << false << false;
        QTest::newRow("others left") << more << true << false;
        QTest::newRow("no programs key") << QJsonObject{{"Path", "/x"}} << true << false;
        QTest::newRow("record can't be had") << QJsonObject() << true << false;
    }
    void deleteEntry() {
        QFETCH(QJsonObject, after);
        QFETCH(bool, flag);
        QFETCH(bool, deleted);
        const LogCapture log;
        if (after.isEmpty())
            fake.setError("Bottles.get:d", "gone");
        else
            fake.setBottle("d", after);
        BottleUtils::deleteEntry("d", "w", flag);
        QCOMPARE(fake.calls("removeExternalProgram").value(0).arguments, (QJsonArray{"d", "w"}));
        BottleUtils::runCommand("d", "after");  // calls arrive in order, so a delete is there by now or never
        fake.waitForCall("run_command");
        QCOMPARE(fake.calls("delete").size(), deleted ? 1 : 0);
        QCOMPARE(log.contains(QtInfoMsg, "delete bottles: d"), deleted);
        QVERIFY(log.contains(QtInfoMsg, "[d] after"));
    }

    void addExe() {
        const LogCapture log;
        const QString id = BottleUtils::addExe("b", "App", "C:\\a.exe");
        QVERIFY(!QUuid(id).isNull() && !id.contains('{'));
        const QJsonArray arguments = fake.calls("updateExternalProgram").value(0).arguments;
        QCOMPARE(QJsonDocument::fromJson(arguments.at(1).toString().toUtf8()).object(),
                 (QJsonObject{{"id", id}, {"name", "App"}, {"path", "C:\\a.exe"}}));
        QVERIFY(log.contains("Add exe self: C:\\a.exe"));
    }

    void setStars() {
        const LogCapture log;
        fake.setAnswers("updateExternalProgram",
                        {{{"empty", true}}, {{"error", "read only"}}, {{"text", ""}}});
        BottleUtils::setStars("b", "w", 5);
        QCOMPARE(fake.calls("updateExternalProgram").value(0).arguments,
                 (QJsonArray{"b", "{\"id\":\"w\",\"stars\":5}"}));
        QVERIFY2(log.contains(QtInfoMsg, "update app rating in cfg: b:w->5"), qPrintable(log.text()));
        BottleUtils::setStars("b", "w", 4);
        QVERIFY(log.contains(QtWarningMsg, "update app rating failed: read only"));
        BottleUtils::setStars("b", "W", 3);
        QVERIFY(log.contains(QtWarningMsg, "program W not in bottles: b"));
        QCOMPARE(fake.calls("updateExternalProgram").size(), 2);
    }

    void describeEmulator() {
        fake.setText("getEmulators", "{\"installed\":{\"box64\":\"x\"},\"using\":\"box64\"}");
        const EmulatorPackage::PackageSource queries{[](const QString&) { return QStringList(); },
                                                     [](const QString&) { return QString("0.3"); }};
        QCOMPARE(EmulatorPackage::describe("b", queries), QString("lumora-box64 0.3"));
    }

private:
    TestSupport::TestHome home;
    TestSupport::PrivateBus bus;
    TestSupport::FakeBottleService fake;
    QString root;
    QStringList opened;
};

QTEST_GUILESS_MAIN(BottleUtilsTest)
#include "BottleUtilsTest.moc"
