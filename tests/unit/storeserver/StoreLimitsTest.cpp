#include <sys/resource.h>

#include <QTcpSocket>
#include <QtTest>

#include "storeserver/SessionLife.h"
#include "storeserver/catalogue/CatalogueLoader.h"
#include "storeserver/reports/ReportAnswer.h"
#include "storeserver/request/AnswerCache.h"
#include "storeserver/server/HttpServer.h"
#include "support/LogCapture.h"
#include "support/StoreFiles.h"
#include "support/Table.h"

using namespace StoreServer;
using TestSupport::Table;
using namespace std::chrono_literals;

namespace {

constexpr int WaitMs = 20000;
constexpr int LargeBytes = 32 * 1024 * 1024;
const QByteArray Request = "GET /small HTTP/1.1\r\nHost: h\r\n\r\n";

StoreAnswer answerOf(const StoreRequest& request) {
    StoreAnswer answer;
    answer.contentType = "text/plain";
    answer.body = request.path == "/large" ? std::string(LargeBytes, 'x') : "small";
    return answer;
}

}  // namespace

/// A server in this process with short limits, and clients that exceed them.
class StoreLimitsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void endsSlowConnections_data() {
        const Table<QByteArray, int> row("bytes", "slow");
        row("says nothing", "", 0);
        row("half a request", "GET /small HT", 1);
        row("request and a half", Request + "GET", 1);
        row("half a body", "POST / HTTP/1.1\r\nHost: h\r\nContent-Length: 9\r\n\r\nabc", 3);
        row("takes no answer", "GET /large HTTP/1.1\r\nHost: h\r\n\r\n", 2);
    }
    void endsSlowConnections() {
        QFETCH(QByteArray, bytes);
        QFETCH(int, slow);
        ServerLimits limits{1h, 1h, 1h, 1s, 10, 1 << 20, 1h};
        *(std::array{&limits.idle, &limits.reading, &limits.writing, &limits.receiving}[size_t(slow)]) = 1s;
        start(limits);
        const auto client = connected();
        if (slow == 2)
            client->setReadBufferSize(1);  // the system's buffers are full soon
        client->write(bytes);
        QTRY_COMPARE_WITH_TIMEOUT(isEnded(*client, slow != 2), true, WaitMs);
    }

    void longestWaitingMakesRoom() {
        start({1h, 1h, 1h, 1s, 3});
        std::vector<std::unique_ptr<QTcpSocket>> clients;
        for (int index = 0; index < 3; ++index) {
            clients.push_back(connected());
            clients.back()->write(Request);
            QVERIFY(clients.back()->waitForReadyRead(WaitMs));
        }
        clients.front()->readAll();
        clients.front()->write(Request);  // now the second has waited longest
        QVERIFY(clients.front()->waitForReadyRead(WaitMs));
        const auto fresh = connected();
        fresh->write(Request);
        QVERIFY(fresh->waitForReadyRead(WaitMs));
        QTRY_COMPARE(clients[1]->state(), QAbstractSocket::UnconnectedState);
        QCOMPARE(clients[0]->state(), QAbstractSocket::ConnectedState);
        QCOMPARE(clients[2]->state(), QAbstractSocket::ConnectedState);
    }

    void uploadsThatMoveStay() {
        start({1h, 1h, 1h, 1s, 4});
        const auto upload = connected();
        upload->write("POST / HTTP/1.1\r\nHost: h\r\nContent-Length: 9\r\n\r\nabc");
        QVERIFY(upload->waitForBytesWritten(WaitMs));
        const auto other = connected("127.0.0.2");
        other->write(Request);
        QVERIFY(other->waitForReadyRead(WaitMs));
        // Of the crowded network, not of the other; and those that are idle first.
        std::vector<std::unique_ptr<QTcpSocket>> clients;
        for (int index = 0; index < 4; ++index) {
            clients.push_back(connected());
            clients.back()->write(Request);
            QVERIFY(clients.back()->waitForReadyRead(WaitMs));
        }
        QTRY_COMPARE(clients[0]->state(), QAbstractSocket::UnconnectedState);
        QTRY_COMPARE(clients[1]->state(), QAbstractSocket::UnconnectedState);
        QCOMPARE(other->state(), QAbstractSocket::ConnectedState);
        upload->write("defghi");
        QVERIFY(upload->waitForReadyRead(WaitMs));
        QVERIFY(upload->readAll().startsWith("HTTP/1.1 200"));
    }

    void answersNotTakenMakeRoom() {
        start({1h, 1h, 1h, 1s, 10, LargeBytes * 3 / 2});
        std::vector<std::unique_ptr<QTcpSocket>> clients;
        for (int index = 0; index < 2; ++index) {
            clients.push_back(connected());
            clients.back()->setReadBufferSize(1);
            clients.back()->write("GET /large HTTP/1.1\r\nHost: h\r\n\r\n");
            QVERIFY(clients.back()->waitForReadyRead(WaitMs));
        }
        QTRY_COMPARE_WITH_TIMEOUT(isEnded(*clients.front(), false), true, WaitMs);
        clients.back()->setReadBufferSize(0);
        qint64 received = 0;
        QTRY_VERIFY_WITH_TIMEOUT((received += clients.back()->readAll().size()) > LargeBytes, WaitMs);
    }

    void connectionWaitsForADescriptor() {
        start({1h, 1h, 1h, 1s, 10});
        const TestSupport::LogCapture log;
        rlimit limit = {};
        QCOMPARE(::getrlimit(RLIMIT_NOFILE, &limit), 0);
        QTcpSocket client;
        QVERIFY(client.bind(QHostAddress(QHostAddress::LocalHost)));  // has its descriptor now
        const int next = Fenk::OwnedFd(::dup(0)).get();
        const rlimit noMore{rlim_t(next), limit.rlim_max};
        QCOMPARE(::setrlimit(RLIMIT_NOFILE, &noMore), 0);
        client.connectToHost("127.0.0.1", quint16(m_server->port()));
        QVERIFY(client.waitForConnected(WaitMs));
        client.write(Request);
        QTRY_VERIFY(log.contains("a connection cannot be accepted"));
        QCOMPARE(::setrlimit(RLIMIT_NOFILE, &limit), 0);
        QVERIFY(client.waitForReadyRead(WaitMs));
        QCOMPARE(log.count("a connection cannot be accepted"), 1);
    }

    void lateUseIsServedBeforeTheEnd() {
        ServerActivity activity;
        SessionLife life(activity, 1);
        connect(&life, &SessionLife::leaving, this, [&activity] { activity.touch(); });
        QSignalSpy left(&life, &SessionLife::left);
        QVERIFY(left.wait(WaitMs));
        QVERIFY(activity.sinceLast() >= 2s);
    }

    void endSendsWhatIsAnswered() {
        start({1h, 1h, 1h, 10s, 10});
        const auto idle = connected();
        const auto client = connected();
        client->write("GET /large HTTP/1.1\r\nHost: h\r\n\r\n");
        QVERIFY(client->waitForReadyRead(WaitMs));
        std::thread end([this] { m_server->stop(); });
        qint64 received = 0;
        while (client->state() == QAbstractSocket::ConnectedState && client->waitForReadyRead(WaitMs))
            received += client->readAll().size();
        end.join();
        QVERIFY2(received > LargeBytes, qPrintable(QString::number(received)));
        QTRY_COMPARE(idle->state(), QAbstractSocket::UnconnectedState);
    }

    void cacheIsBoundedAndOfOneCatalogue() {
        TestSupport::StoreFiles files;
        files.add("notes", {7, "Notes", "记事本"});
        CatalogueLoader loader(files.path(), 1);
        const auto first = loader.refresh().catalogue;
        AnswerCache cache(64 * 1024);
        StoreAnswer answer;
        answer.body = std::string(2000, 'x');
        cache.find(first, "");
        for (int index = 0; index < 30; ++index) {
            cache.insert(std::to_string(index), answer);
            QVERIFY(cache.find(first, "0"));  // used each time, so that others go
        }
        QVERIFY(!cache.find(first, "1"));
        QVERIFY(cache.find(first, "29"));
        answer.body = std::string(60 * 1024, 'x');
        cache.insert("large", answer);
        QVERIFY(!cache.find(first, "large"));
        answer = {};
        answer.status = 500;
        cache.insert("failed", answer);
        QVERIFY(!cache.find(first, "failed"));
        files.add("more", {8, "More", "更多"});
        QVERIFY(!cache.find(loader.refresh().catalogue, "0"));
    }

    void cleanup() { m_server.reset(); }

private:
    void start(const ServerLimits& limits) {
        m_server = std::make_unique<HttpServer>();
        QCOMPARE(m_server->listen("127.0.0.1", 0), std::string());
        m_server->start(
            1, [](int) { return answerOf; }, limits,
            [](const StoreRequest&, size_t) { return std::make_unique<RefusedBody>(Refusal()); });
    }
    std::unique_ptr<QTcpSocket> connected(const char* from = "127.0.0.1") const {
        auto socket = std::make_unique<QTcpSocket>();
        if (!socket->bind(QHostAddress(from)))
            qFatal("no such address");
        socket->connectToHost("127.0.0.1", quint16(m_server->port()));
        if (!socket->waitForConnected(WaitMs))
            qFatal("no connection");
        return socket;
    }
    /// A client that reads nothing does not see the end before it writes.
    static bool isEnded(QTcpSocket& socket, bool isReading) {
        if (isReading)
            socket.readAll();
        else
            socket.write("x");
        return socket.state() == QAbstractSocket::UnconnectedState;
    }

    std::unique_ptr<HttpServer> m_server;
};

QTEST_GUILESS_MAIN(StoreLimitsTest)
#include "StoreLimitsTest.moc"
