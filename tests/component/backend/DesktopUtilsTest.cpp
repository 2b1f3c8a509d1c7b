#include <QtTest>

#include "backend/DesktopUtils.h"
#include "support/FakeBottleService.h"
#include "support/LogCapture.h"
#include "support/PrivateBus.h"

using TestSupport::LogCapture;

class DesktopUtilsTest : public QObject {
    Q_OBJECT

    TestSupport::PrivateBus bus;
    TestSupport::FakeBottleService desktop;

private Q_SLOTS:
    void initTestCase() { QVERIFY(desktop.start(true)); }
    void init() { desktop.clearCalls(); }

    void withoutADesktop() {
        const LogCapture log;
        QVERIFY(!DesktopUtils::notify("t", "b"));
        QVERIFY(log.contains(QtWarningMsg, "Failed to send notification:"));
        DesktopUtils::showInFileManager("/tmp/x");
        bool isTold = false;
        DesktopUtils::openInAppStore("p", this, [&isTold] { isTold = true; });
        QTRY_VERIFY(isTold);
        QVERIFY(!DesktopUtils::hasAppStore());
        QVERIFY(log.contains(QtWarningMsg, "open app store failed"));
    }

    void notify() {
        const LogCapture log;
        QVERIFY(desktop.takeName("org.freedesktop.Notifications"));
        desktop.setAnswers("Notify", {{{"number", 1}}});
        const QJsonArray actions{"_open", "View"};
        const QJsonObject hints{{"x-lumora-action-_open", "cellarix,--fixup"}};
        QVERIFY(DesktopUtils::notify("Title", "Body", {"_open", "View"}, hints.toVariantMap()));
        const auto call = desktop.waitForCall("Notify");
        QCOMPARE(call.path + ' ' + call.interface,
                 "/org/freedesktop/Notifications org.freedesktop.Notifications");
        QCOMPARE(call.signature, "susssasa{sv}i");
        QCOMPARE(call.arguments,
                 (QJsonArray{"cellarix", 0, "cellarix", "Title", "Body", actions, hints, 3000}));
        QVERIFY(log.lines().isEmpty());
    }

    void showInFileManager() {
        const LogCapture log;
        QVERIFY(desktop.takeName("org.freedesktop.FileManager1"));
        desktop.setAnswers("ShowItems", {{{"empty", true}}, {{"error", "no display"}}});
        DesktopUtils::showInFileManager("/tmp/a b#1%");
        QCOMPARE(desktop.calls("ShowItems").value(0).arguments,
                 (QJsonArray{QJsonArray{"file:///tmp/a%20b%231%25"}, ""}));
        QVERIFY(log.lines().isEmpty());
        DesktopUtils::showInFileManager("/tmp/x");
        QVERIFY2(log.contains("MSG: no display"), qPrintable(log.text()));
    }

    void openInAppStore() {
        const LogCapture log;
        QVERIFY(desktop.takeName("com.home.appstore.client"));
        DesktopUtils::openInAppStore("ge-proton9");
        QCOMPARE(desktop.waitForCall("openBusinessUri").arguments,
                 QJsonArray{"app_detail_info/lumora-ge-proton9"});
        QVERIFY(DesktopUtils::hasAppStore());
        DesktopUtils::openInAppStore("lumora-box64");
        QCOMPARE(desktop.waitForCall("openBusinessUri", 2).arguments,
                 QJsonArray{"app_detail_info/lumora-box64"});
        QVERIFY(log.lines().isEmpty());
    }
};

QTEST_GUILESS_MAIN(DesktopUtilsTest)
#include "DesktopUtilsTest.moc"
