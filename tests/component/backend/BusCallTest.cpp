#include <QDBusAbstractInterface>
#include <QDBusConnection>
#include <QtTest>

#include "backend/BusCall.h"
#include "support/FakeBottleService.h"
#include "support/PrivateBus.h"

using TestSupport::FakeBottleService;

namespace {
/// A proxy that, unlike the product's, can be deleted while a call is under way.
class MortalProxy : public QDBusAbstractInterface {
public:
    explicit MortalProxy(const QDBusConnection& bus = QDBusConnection::sessionBus())
        : QDBusAbstractInterface("com.lumora.LumoraWineLauncher", "/com/lumora/Manager/Bottles",
                                 "com.lumora.Manager.Bottles", bus, nullptr) {
        setTimeout(20000);
    }
};
}  // namespace

/// Who may go while a call is under way, in each mode: the caller's object, the proxy, the service, the bus.
class BusCallTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() {
        fake = std::make_unique<FakeBottleService>();
        QVERIFY(fake->start());
        fake->setHeld("listAllPrograms", "[]");
        proxy = std::make_unique<MortalProxy>();
    }

    void watch_data() {
        QTest::addColumn<QString>("event");
        QTest::addColumn<QStringList>("heard");
        QTest::newRow("answer") << "" << QStringList{"[]"};
        QTest::newRow("context goes") << "context" << QStringList();
        QTest::newRow("context goes in the handler") << "handler" << QStringList{"[]"};
        QTest::newRow("proxy goes") << "proxy" << QStringList{"[]"};
        QTest::newRow("service goes") << "service" << QStringList{"error"};
        QTest::newRow("time-out") << "late" << QStringList{"goes on"};
    }
    void watch() {
        QFETCH(QString, event);
        QFETCH(QStringList, heard);
        auto context = std::make_unique<QObject>();
        QStringList results;
        if (event == "late")
            proxy->setTimeout(100);
        BusCall::watch(*proxy, "listAllPrograms", {}, context.get(), [&](const BusResult& result) {
            results << (result.timedOut ? "goes on" : result.errorMessage.isEmpty() ? result.text : "error");
            if (event == "handler")
                context.reset();
        });
        fake->waitForCall("listAllPrograms");
        if (event == "context")
            context.reset();
        else if (event == "proxy")
            proxy.reset();
        if (event == "service") {
            fake->kill();
        } else if (event != "late") {
            QCOMPARE(fake->release(), 1);
            bool isLaterAnswered = false;
            MortalProxy later;
            BusCall::watch(later, "list", {}, this, [&](const BusResult&) { isLaterAnswered = true; });
            QTRY_VERIFY(isLaterAnswered);
        }
        QTRY_COMPARE(results, heard);
    }

    void loop_data() {
        QTest::addColumn<QString>("event");
        QTest::addColumn<bool>("ok");
        QTest::addColumn<bool>("abandoned");
        QTest::newRow("answer") << "answer" << true << false;
        QTest::newRow("owner goes") << "owner" << false << true;
        QTest::newRow("owner goes as the answer comes") << "owner and answer" << false << true;
        QTest::newRow("proxy goes, then the answer") << "proxy" << true << false;
        QTest::newRow("service goes") << "service" << false << false;
        QTest::newRow("without an owner") << "no owner" << true << false;
    }
    void loop() {
        QFETCH(QString, event);
        QFETCH(bool, ok);
        auto owner = std::make_unique<QObject>();
        QTimer::singleShot(0, this, [&] {
            fake->waitForCall("listAllPrograms");
            if (event == "service") {
                fake->kill();
                return;
            }
            if (event == "proxy")
                proxy.reset();
            if (event != "owner")
                fake->release();
            if (event.startsWith("owner"))
                owner.reset();
        });
        const BusResult result =
            BusCall::loop(*proxy, "listAllPrograms", {}, event == "no owner" ? nullptr : owner.get());
        QCOMPARE(result.ok, ok);
        QTEST(result.abandoned, "abandoned");
        QCOMPARE(result.errorMessage.isEmpty(), ok);
        fake->release();
    }

    // A second call from a slot that runs on top of the first one's wait.
    void loopInLoop() {
        fake->setText("scanApplicationLinks", "[1]");
        QString inner;
        QTimer::singleShot(0, this, [&] {
            fake->waitForCall("listAllPrograms");
            inner = BusCall::loop(*proxy, "scanApplicationLinks", {"b", qlonglong(1), true}, this).text;
            fake->release();
        });
        QCOMPARE(BusCall::loop(*proxy, "listAllPrograms", {}, this).text, QString("[]"));
        QCOMPARE(inner, QString("[1]"));
    }

    void valueThatCannotTravel() {
        const QVariantList arguments{"b", QVariant::fromValue(QJsonObject{{"id", "u"}})};
        QVERIFY(!BusCall::block(*proxy, "updateExternalProgram", arguments).ok);
        QVERIFY(!BusCall::loop(*proxy, "updateExternalProgram", arguments, nullptr).ok);
        BusCall::fire(*proxy, "updateExternalProgram", arguments);
        QVERIFY(fake->calls("updateExternalProgram").isEmpty());
    }

    void noBus() {
        MortalProxy lost(QDBusConnection("never connected"));
        QVERIFY(!BusCall::block(lost, "list").ok);
        QVERIFY(!BusCall::loop(lost, "list", {}, this).ok);
        BusCall::fire(lost, "list", {});
        QStringList heard;
        auto context = std::make_unique<QObject>();
        BusCall::watch(lost, "list", {}, context.get(), [&](const BusResult&) { heard << "deleted"; });
        context.reset();
        BusCall::watch(lost, "list", {}, this, [&](const BusResult& result) { heard << result.errorName; });
        QVERIFY(heard.isEmpty());
        QTRY_COMPARE(heard, QStringList{"org.freedesktop.DBus.Error.Disconnected"});
    }

    // Last: there is no bus afterwards.
    void theBusGoes() {
        QTimer::singleShot(0, this, [&] {
            fake->waitForCall("listAllPrograms");
            bus.stop();
        });
        QVERIFY(!BusCall::loop(*proxy, "listAllPrograms", {}, this).ok);
        QVERIFY(!BusCall::block(*proxy, "list").ok);
        bool failed = false;
        BusCall::watch(*proxy, "list", {}, this, [&](const BusResult& result) { failed = !result.ok; });
        QTRY_VERIFY(failed);
    }

private:
    TestSupport::PrivateBus bus;
    std::unique_ptr<FakeBottleService> fake;
    std::unique_ptr<MortalProxy> proxy;
};

QTEST_GUILESS_MAIN(BusCallTest)
#include "BusCallTest.moc"
