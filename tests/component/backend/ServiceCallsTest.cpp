#include <QtTest>

#include "backend/ServiceCalls.h"
#include "support/FakeBottleService.h"
#include "support/PrivateBus.h"

using TestSupport::FakeBottleService;

namespace {
/// A client that, unlike the product's, can be deleted while a call is under way.
class MortalClient : public ServiceCalls {
public:
    explicit MortalClient(const QDBusConnection& bus = QDBusConnection::sessionBus())
        : ServiceCalls("Bottles", 20000, bus) {}
    using ServiceCalls::block;
    using ServiceCalls::fire;
    using ServiceCalls::loop;
    using ServiceCalls::watch;
};
}  // namespace

/// Who may go while a call is under way, in each mode: the caller's object, the client, the service, the bus.
class ServiceCallsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() {
        fake = std::make_unique<FakeBottleService>();
        QVERIFY(fake->start());
        fake->setHeld("listAllPrograms", "[]");
        client = std::make_unique<MortalClient>();
    }

    void watch_data() {
        QTest::addColumn<QString>("event");
        QTest::addColumn<QStringList>("heard");
        QTest::newRow("answer") << "" << QStringList{"[]"};
        QTest::newRow("context goes") << "context" << QStringList();
        QTest::newRow("context goes in the handler") << "handler" << QStringList{"[]"};
        QTest::newRow("client goes") << "client" << QStringList{"[]"};
        QTest::newRow("service goes") << "service" << QStringList{"error"};
        QTest::newRow("time-out") << "late" << QStringList{"goes on"};
    }
    void watch() {
        QFETCH(QString, event);
        QFETCH(QStringList, heard);
        auto context = std::make_unique<QObject>();
        QStringList results;
        if (event == "late")
            client->setTimeout(100);
        client->watch("listAllPrograms", {}, context.get(), [&](const BusResult& result) {
            results << (result.timedOut ? "goes on" : result.errorMessage.isEmpty() ? result.text : "error");
            if (event == "handler")
                context.reset();
        });
        fake->waitForCall("listAllPrograms");
        if (event == "context")
            context.reset();
        else if (event == "client")
            client.reset();
        if (event == "service") {
            fake->kill();
        } else if (event != "late") {
            QCOMPARE(fake->release(), 1);
            bool isLaterAnswered = false;
            MortalClient later;
            later.watch("list", {}, this, [&](const BusResult&) { isLaterAnswered = true; });
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
        QTest::newRow("client goes, then the answer") << "client" << true << false;
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
            if (event == "client")
                client.reset();
            if (event != "owner")
                fake->release();
            if (event.startsWith("owner"))
                owner.reset();
        });
        const BusResult result =
            client->loop("listAllPrograms", {}, event == "no owner" ? nullptr : owner.get());
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
            inner = client->loop("scanApplicationLinks", {"b", qlonglong(1), true}, this).text;
            fake->release();
        });
        QCOMPARE(client->loop("listAllPrograms", {}, this).text, QString("[]"));
        QCOMPARE(inner, QString("[1]"));
    }

    void valueThatCannotTravel() {
        const QVariantList arguments{"b", QVariant::fromValue(QJsonObject{{"id", "u"}})};
        QVERIFY(!client->block("updateExternalProgram", arguments).ok);
        QVERIFY(!client->loop("updateExternalProgram", arguments, nullptr).ok);
        client->fire("updateExternalProgram", arguments);
        QVERIFY(fake->calls("updateExternalProgram").isEmpty());
    }

    void noBus() {
        MortalClient lost(QDBusConnection("never connected"));
        QVERIFY(!lost.block("list").ok);
        QVERIFY(!lost.loop("list", {}, this).ok);
        lost.fire("list", {});
        QStringList heard;
        auto context = std::make_unique<QObject>();
        lost.watch("list", {}, context.get(), [&](const BusResult&) { heard << "deleted"; });
        context.reset();
        lost.watch("list", {}, this, [&](const BusResult& result) { heard << result.errorName; });
        QVERIFY(heard.isEmpty());
        QTRY_COMPARE(heard, QStringList{"org.freedesktop.DBus.Error.Disconnected"});
    }

    // Last: there is no bus afterwards.
    void theBusGoes() {
        QTimer::singleShot(0, this, [&] {
            fake->waitForCall("listAllPrograms");
            bus.stop();
        });
        QVERIFY(!client->loop("listAllPrograms", {}, this).ok);
        QVERIFY(!client->block("list").ok);
        bool failed = false;
        client->watch("list", {}, this, [&](const BusResult& result) { failed = !result.ok; });
        QTRY_VERIFY(failed);
    }

private:
    TestSupport::PrivateBus bus;
    std::unique_ptr<FakeBottleService> fake;
    std::unique_ptr<MortalClient> client;
};

QTEST_GUILESS_MAIN(ServiceCallsTest)
#include "ServiceCallsTest.moc"
