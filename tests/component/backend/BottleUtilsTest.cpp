#include <QDesktopServices>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>
#include <QUuid>
#include <QtTest>

#include "backend/BottleUtils.h"
#include "support/FakeBottleService.h"
#include "support/LogCapture.h"
#include "support/PrivateBus.h"
#include "support/TestHome.h"

using TestSupport::LogCapture;

class BottleUtilsTest : public QObject {
    Q_OBJECT

    TestSupport::TestHome home;
    TestSupport::PrivateBus bus;
    TestSupport::FakeBottleService fake;
    const QString root = home.path() + "/b #1";
    QStringList opened;

public Q_SLOTS:
    void remember(const QUrl& url) { opened.append(url.toString()); }

private Q_SLOTS:
    void initTestCase() {
        QDesktopServices::setUrlHandler("file", this, "remember");
        QVERIFY(fake.start());
        home.write("b #1/drive_c/Program Files/App/a.exe", "MZ");
        QVERIFY(QDir().mkpath(root + "/dosdevices"));
        QVERIFY(QFile::link("../drive_c", root + "/dosdevices/c:"));
    }
    void init() {
        opened.clear();
        const QString record = R"({"Path":"%1","Runner":"lumora-wine10-stable","External_Programs":{
            "w":{"id":"w","path":"C:\\program files\\app\\A.EXE","folder":"C:\\program files\\app"},
            "u":{"id":"u","path":"%1/drive_c/Program Files/App/a.exe","folder":"%1"},
            "m":{"id":"m","path":"/nonexistent.exe"}}})";
        fake.setText("Bottles.get:b", record.arg(root));
        fake.setText("Bottles.get:homeless", QString(record).remove("Path"));
        fake.clearCalls();
    }

    void readers() {
        QCOMPARE(BottleUtils::bottlePath("b"), root);
        QCOMPARE(BottleUtils::bottlePrograms("b").size(), 3);
        const QString program = "/Program Files/App/a.exe";
        QCOMPARE(BottleUtils::programPath("b", "w"), root + "/dosdevices/c:" + program);
        QCOMPARE(BottleUtils::programPath("b", "u"), root + "/drive_c" + program);
        // The file, the program, the bottle's directory and the bottle are missing.
        const LogCapture log;
        for (const QStringList& row : {QStringList{"b", "m"}, {"b", "x"}, {"homeless", "w"}, {"none", "w"}})
            QCOMPARE(BottleUtils::programPath(row[0], row[1]), QString());
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
        QTest::addColumn<QString>("after");  // the bottle's record once the program is gone
        QTest::addColumn<bool>("flag");
        QTest::addColumn<bool>("deleted");
        const char empty[] = R"({"Path":"/nonexistent","External_Programs":{}})";
        QTest::newRow("last one, flag") << empty << true << true;
        QTest::newRow("last one, no flag") << empty << false << false;
        QTest::newRow("others left") << R"({"External_Programs":{"o":{"id":"o"}}})" << true << false;
        QTest::newRow("record can't be had") << "" << true << false;
    }
    void deleteEntry() {
        QFETCH(QString, after);
        QFETCH(bool, flag);
        QFETCH(bool, deleted);
        const LogCapture log;
        if (after.isEmpty())
            fake.setError("Bottles.get:d", "gone");
        else
            fake.setText("Bottles.get:d", after);
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
};

QTEST_GUILESS_MAIN(BottleUtilsTest)
#include "BottleUtilsTest.moc"
