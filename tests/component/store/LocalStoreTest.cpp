#include <QDBusConnection>
#include <QDBusContext>
#include <QSignalSpy>
#include <QTest>
#include <memory>

#include "store/client/StoreClient.h"
#include "store/client/VeskClientDefaultApi.h"
#include "support/HttpServer.h"
#include "support/LogCapture.h"
#include "support/PrivateBus.h"
#include "support/Table.h"
#include "support/TestHome.h"

using namespace OpenAPI;

/// What the store server says on the bus.
class StoreObject : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.lumora.Cellarix.Store")
public:
    QString answer;
    int calls = 0;

public Q_SLOTS:
    QString address() {
        ++calls;
        if (answer.isEmpty())
            sendErrorReply(QDBusError::Failed, "no port is free");
        return answer;
    }
};

class LocalStoreTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() {
        QDBusConnection bus = QDBusConnection::connectToBus(m_bus.address(), "store");
        QVERIFY(bus.registerObject("/com/lumora/Cellarix/Store", &m_store, QDBusConnection::ExportAllSlots));
        QVERIFY(bus.registerService("com.lumora.Cellarix.Store"));
    }

    void answersWhereNoOtherIsConfigured_data() {
        const TestSupport::Table<QString, bool, QString> row("address", "isGood", "log");
        row("this machine", "server", true, "");
        row("another machine", "http://192.0.2.1:80", false, "no address of this machine");
        row("no port", "http://127.0.0.1", false, "no address of this machine");
        row("a password", "http://a:b@127.0.0.1:9", false, "no address of this machine");
        row("no address", "file:///etc", false, "no address of this machine");
        row("an error", "", false, "no port is free");
    }
    void answersWhereNoOtherIsConfigured() {
        QFETCH(QString, address);
        QFETCH(bool, isGood);
        QFETCH(QString, log);
        TestSupport::HttpServer server;
        server.files["categories"] = R"({"code":200,"data":{"list":[{"id":3,"name":"Three"}]}})";
        m_store.answer = address == "server" ? server.address({}).chopped(1) : address;
        m_store.calls = 0;
        TestSupport::LogCapture lines;
        std::unique_ptr<VeskClientDefaultApi> api(makeStoreClient());
        QSignalSpy good(api.get(), &VeskClientDefaultApi::getCategoriesSignal);
        QSignalSpy bad(api.get(), &VeskClientDefaultApi::getCategoriesSignalE);
        QSignalSpy all(api.get(), &VeskClientDefaultApi::allPendingRequestsCompleted);
        api->getCategories();
        QVERIFY(all.wait());
        QCOMPARE(good.size(), isGood ? 1 : 0);
        QCOMPARE(bad.size(), isGood ? 0 : 1);
        QCOMPARE(m_store.calls, 1);
        QVERIFY2(lines.contains(log), qPrintable(lines.text()));
        // A request that is given up before the address is known ends silently.
        api->getCategories();
        Q_EMIT api->abortRequests();
        QCOMPARE(all.size(), 2);
        QTRY_COMPARE(m_store.calls, 2);
        QCOMPARE(good.size() + bad.size(), 1);
    }

private:
    TestSupport::TestHome m_home;
    TestSupport::PrivateBus m_bus;
    StoreObject m_store;
};

QTEST_GUILESS_MAIN(LocalStoreTest)
#include "LocalStoreTest.moc"
