#include <sys/socket.h>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPixmap>
#include <QTcpSocket>

#include <csignal>

#include "store/client/StoreClient.h"
#include "store/client/VeskClientDefaultApi.h"
#include "store/client/VeskClientHttpRequestWorker.h"
#include "support/ChildProcess.h"
#include "support/StoreFiles.h"
#include "support/Table.h"

using namespace OpenAPI;
using TestSupport::StoreFiles;
using TestSupport::Table;

namespace {

constexpr int WaitMs = 20000;

QByteArray bodyOf(const QByteArray& answer) {
    return answer.mid(answer.indexOf("\r\n\r\n") + 4);
}

}  // namespace

/// The built server as a process, asked by plain sockets and by the application's own client.
class StoreServerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        m_files.add("notes", {7, "Notes", "记事本", 1, 50, 4, "2024-05-01"});
        m_files.add("seven-zip", {8, "7-Zip", "压缩", 2, 90, 4, "2024-03-01"});
        m_server = std::make_unique<TestSupport::ChildProcess>();
        m_server->setProcessChannelMode(QProcess::MergedChannels);
        m_server->start(STORE_SERVER, {"--data", m_files.path(), "--listen", "127.0.0.1:0"});
        QVERIFY2(waitForLine("listening on "), m_log.constData());
        m_address = m_log.mid(m_log.lastIndexOf("http://")).trimmed();
    }

    void cleanupTestCase() {
        m_server->terminate();
        QVERIFY(m_server->waitForFinished(WaitMs));
        QCOMPARE(m_server->exitStatus(), QProcess::NormalExit);
        QCOMPARE(m_server->exitCode(), 0);
    }

    void clientListsAndShows() {
        VeskClientPagination page;
        page.setPageIndex(1);
        page.setPageSize(20);
        VeskClientFieldSort sort;
        sort.setField("download_count");
        sort.setSort("desc");
        const std::unique_ptr<VeskClientDefaultApi> api(makeStoreClient(m_address));
        QSignalSpy listed(api.get(), &VeskClientDefaultApi::listAppsSignal);
        api->listApps(1, page, sort);
        QVERIFY(listed.wait());
        const auto apps = listed[0][0].value<VeskClientAppInfoResponse>();
        QCOMPARE(apps.getCode(), 200);
        QCOMPARE(apps.getData().getPagination().getTotal(), 1);
        const VeskClientAppInfo app = apps.getData().getList().value(0);
        QVERIFY(app.isValid());
        QCOMPARE(app.getAppId(), 7LL);
        QPixmap icon;
        const QString iconAddress = app.getIconSaveKey();
        QVERIFY2(iconAddress.startsWith(m_address + "/icons/"), qPrintable(iconAddress));
        const QByteArray answer = get(iconAddress.mid(m_address.size()).toUtf8());
        QVERIFY2(answer.contains("max-age=31536000"), answer.constData());
        QVERIFY(icon.loadFromData(bodyOf(answer)));

        QSignalSpy found(api.get(), &VeskClientDefaultApi::searchSignal);
        api->search(QString::fromUtf8("压缩"), page);
        QVERIFY(found.wait());
        QCOMPARE(found[0][0].value<VeskClientAppInfoResponse>().getData().getList().value(0).getAppInfoId(),
                 QString("seven-zip"));
    }

    void clientReadsTheRest() {
        const std::unique_ptr<VeskClientDefaultApi> api(makeStoreClient(m_address));
        QSignalSpy categories(api.get(), &VeskClientDefaultApi::getCategoriesSignal);
        QSignalSpy infos(api.get(), &VeskClientDefaultApi::getAppInfoSignal);
        QSignalSpy failures(api.get(), &VeskClientDefaultApi::downloadYmlSignalErrorFull);
        QSignalSpy all(api.get(), &VeskClientDefaultApi::allPendingRequestsCompleted);
        QByteArray manifest;
        connect(api.get(), &VeskClientDefaultApi::downloadYmlSignalFull, this,
                [&manifest](VeskClientHttpRequestWorker* worker) { manifest = worker->response; });
        api->getCategories();
        api->getAppInfo("7", "notes");
        api->downloadYml("notes");
        api->downloadYml("../notes");
        QVERIFY(all.wait());
        const auto table = categories[0][0].value<VeskClientCategoriesResponse>().getData();
        QCOMPARE(table.getList().value(0).getId(), 2LL);
        QCOMPARE(table.getPagination().getTotal(), 2);
        QCOMPARE(infos[0][0].value<VeskClientAppInfoQueryResponse>().getData().getAppInfo().getAppInfoId(),
                 QString("notes"));
        QCOMPARE(manifest, StoreFiles::manifestText("Notes"));
        QCOMPARE(failures.size(), 1);
        QVERIFY(failures[0][2].toString().contains("\"code\":4000,\"data\":{\"msg\":"));
    }

    void clientLearnsThatThereIsNone() {
        const std::unique_ptr<VeskClientDefaultApi> api(makeStoreClient(m_address));
        QSignalSpy infos(api.get(), &VeskClientDefaultApi::getAppInfoSignal);
        api->getAppInfo("70", "notes");
        QVERIFY(infos.wait());
        QCOMPARE(infos[0][0].value<VeskClientAppInfoQueryResponse>().getCode(), 4000);
    }

    void answers_data() {
        const Table<QByteArray, QByteArray, QByteArray> row("path", "status", "body");
        row("nothing", "/", "404", "\"code\":\"404\"");
        row("bad number", "/vesk/client/apps?pageIndex=x", "400", "pageIndex is not a whole number");
        row("unknown icon", "/icons/notes-0000000000000000.svg", "404", "no such icon");
        row("path in an icon", "/icons/..%2Fapps%2Fnotes%2Fstore.yml", "404", "no such icon");
        row("path above", "/icons/../../../../etc/passwd", "404", "");
        row("null in an id", "/vesk/client/downloadYml/notes%00", "404", "does not exist");
        row("broken escape", "/vesk/client/search?keyword=%E8%ZZ%", "200", "\"total\":0");
        row("repeated", "/vesk/client/apps?pageSize=1&pageSize=2", "200", "\"pageSize\":1");
        row("many", "/vesk/client/apps?" + QByteArray("a&").repeated(2000), "200", "\"total\":2");
        row("injection", "/vesk/client/appInfo?appInfoId=' OR 1=1 --", "400", "");
        row("escaped injection", "/vesk/client/appInfo?appInfoId='%20OR%201=1%20--", "200", "\"code\":4000");
    }
    void answers() {
        QFETCH(QByteArray, path);
        QFETCH(QByteArray, status);
        QFETCH(QByteArray, body);
        const QByteArray answer = get(path);
        QVERIFY2(answer.startsWith("HTTP/1.1 " + status), answer.constData());
        QVERIFY2(bodyOf(answer).contains(body), answer.constData());
    }

    void languageComesWithTheRequest() {
        QVERIFY(get("/vesk/client/apps", "X-VESK-Language: zh_TW\r\n").contains("记事本"));
        QVERIFY(!get("/vesk/client/apps", "X-VESK-Language: fr_FR\r\n").contains("记事本"));
    }

    void headHasNoBody() {
        const QByteArray whole = get("/vesk/client/apps");
        const QByteArray head =
            send("HEAD /vesk/client/apps HTTP/1.1\r\nHost: h\r\nConnection: close\r\n\r\n");
        QVERIFY2(head.startsWith("HTTP/1.1 200") && bodyOf(head).isEmpty(), head.constData());
        QVERIFY(head.contains("Content-Length: "));
        const QByteArray post =
            send("DELETE /vesk/client/apps HTTP/1.1\r\nHost: h\r\nConnection: close\r\n\r\n");
        QVERIFY2(post.startsWith("HTTP/1.1 405") && post.contains("Allow: GET, HEAD"), post.constData());
    }

    void hostileBytesAreAnsweredOrDropped_data() {
        const Table<QByteArray> row("bytes");
        row("null bytes", QByteArray(4000, '\0'));
        row("TLS", QByteArray::fromHex("16030100c8010000c40303") + QByteArray(300, 'a'));
        row("endless line", QByteArray(300000, 'a'));
        row("endless headers", "GET / HTTP/1.1\r\n" + QByteArray("A: b\r\n").repeated(50000));
        row("body", "POST / HTTP/1.1\r\nHost: h\r\nContent-Length: 999999999999999999999\r\n\r\n" +
                        QByteArray(90000, 'x'));
        row("range",
            "GET / HTTP/1.1\r\nHost: h\r\nRange: bytes=" + QByteArray("0-1,").repeated(1500) + "\r\n\r\n");
        row("smuggled",
            "GET / HTTP/1.1\r\nHost: h\r\nTransfer-Encoding: chunked\r\n\r\n0\r\n\r\nGET / HTTP/1.1\r\n\r\n");
        row("many at once",
            QByteArray("GET /vesk/client/apps HTTP/1.1\r\nHost: h\r\n\r\n").repeated(300) + "\r\n\r\n");
    }
    void hostileBytesAreAnsweredOrDropped() {
        QFETCH(QByteArray, bytes);
        send(bytes);
        QVERIFY(get("/vesk/client/categories").contains("Office"));
        QCOMPARE(m_server->state(), QProcess::Running);
    }

    void slowOnesDoNotHoldUpOthers() {
        std::vector<std::unique_ptr<QTcpSocket>> slow;
        for (int index = 0; index < 300; ++index) {
            slow.push_back(std::make_unique<QTcpSocket>());
            slow.back()->connectToHost("127.0.0.1", port());
            QVERIFY(slow.back()->waitForConnected(WaitMs));
            slow.back()->write("GET /vesk/client/apps HTTP/1.1\r\nHost: h\r\nX: ");
            slow.back()->flush();
        }
        QVERIFY(get("/vesk/client/categories").contains("Office"));
    }

    void fewDescriptorsLoseNoApplication() {
        StoreFiles files;
        files.add("notes", {7, "Notes", "记事本"});
        TestSupport::ChildProcess server;
        server.setProcessChannelMode(QProcess::MergedChannels);
        server.start("/bin/sh", {"-c", "ulimit -n 60; exec \"$0\" \"$@\"", STORE_SERVER, "--data",
                                 files.path(), "--listen", "127.0.0.1:0"});
        QByteArray log;
        QVERIFY(waitForLine(server, log, "listening on "));
        const QString address = log.mid(log.lastIndexOf("http://")).trimmed();
        std::vector<std::unique_ptr<QTcpSocket>> slow;
        for (int index = 0; index < 80; ++index) {
            slow.push_back(std::make_unique<QTcpSocket>());
            slow.back()->connectToHost("127.0.0.1", quint16(QUrl(address).port()));
            QVERIFY(slow.back()->waitForConnected(WaitMs));
            slow.back()->write("GET /");
            slow.back()->flush();
        }
        files.add("fresh", {9, "Fresh", "新"});
        QVERIFY2(waitForLine(server, log, "serving 2 applications"), log.constData());
        QVERIFY2(!log.contains("serving 0") && !log.contains("apps:"), log.constData());
        server.terminate();
        QVERIFY(server.waitForFinished(WaitMs));
    }

    void servesChanges() {
        m_files.add("fresh", {9, "Fresh", "新", 1});
        QTRY_VERIFY_WITH_TIMEOUT(get("/vesk/client/appInfo?appId=9").contains("Fresh"), WaitMs);
        m_files.write("apps/notes/store.yml", "broken: [");
        QVERIFY(::kill(pid_t(m_server->processId()), SIGHUP) == 0);
        QVERIFY2(waitForLine("apps/notes/store.yml: Line 1"), m_log.constData());
        QVERIFY(get("/vesk/client/appInfo?appId=7").contains("Notes"));
        m_files.remove("notes");
        QTRY_VERIFY_WITH_TIMEOUT(get("/vesk/client/appInfo?appId=7").contains("4000"), WaitMs);
    }

    void checksADirectory() {
        StoreFiles other;
        other.add("notes", {7, "Notes", "记事本"});
        const auto good = TestSupport::runProcess(STORE_SERVER, {"--data", other.path(), "--check"});
        QCOMPARE(good.output, QString("1 applications in 2 categories are in order\n"));
        QVERIFY(good.ok());
        other.write("apps/notes/manifest.yml", StoreFiles::manifestText("Notes") + "Nonsense: 2\n");
        const auto bad = TestSupport::runProcess(STORE_SERVER, {"--data", other.path(), "--check"});
        QCOMPARE(bad.exitCode, 1);
        QVERIFY2(bad.output.startsWith("apps/notes/manifest.yml: Line 3, column 1: "),
                 qPrintable(bad.output));
    }

    void refusesToStart_data() {
        const Table<QStringList, int, QString> row("arguments", "exitCode", "error");
        row("nowhere", {"--data", "/nowhere", "--listen", "127.0.0.1:0"}, 1,
            "no catalogue to serve in /nowhere");
        row("taken", {"--data", m_files.path(), "--listen", m_address.mid(7)}, 1, "cannot be listened on");
        row("name", {"--data", m_files.path(), "--listen", "localhost:0"}, 1, "not an address in numbers");
        row("arguments", {"--threads", "many"}, 2, "--threads must be");
    }
    void refusesToStart() {
        QFETCH(QStringList, arguments);
        const auto result = TestSupport::runProcess(STORE_SERVER, arguments);
        QTEST(result.exitCode, "exitCode");
        QFETCH(QString, error);
        QVERIFY2(result.errors.contains(error), qPrintable(result.errors));
    }

private:
    quint16 port() const { return quint16(QUrl(m_address).port()); }

    /// All that the server sends until it ends the connection, or until it has answered and we end it.
    QByteArray send(const QByteArray& bytes) const {
        QTcpSocket socket;
        socket.connectToHost("127.0.0.1", port());
        if (!socket.waitForConnected(WaitMs))
            return "no connection";
        socket.write(bytes);
        QByteArray answer;
        bool hasEnded = false;
        while (socket.state() == QAbstractSocket::ConnectedState && socket.waitForReadyRead(WaitMs)) {
            answer += socket.readAll();
            if (!hasEnded && socket.bytesToWrite() == 0)
                ::shutdown(int(socket.socketDescriptor()), SHUT_WR);
            hasEnded = hasEnded || socket.bytesToWrite() == 0;
        }
        return answer + socket.readAll();
    }
    QByteArray get(const QByteArray& path, const QByteArray& headers = {}) const {
        return send("GET " + path + " HTTP/1.1\r\nHost: " + m_address.mid(7).toUtf8() + "\r\n" + headers +
                    "Connection: close\r\n\r\n");
    }
    bool waitForLine(const QByteArray& text) { return waitForLine(*m_server, m_log, text); }
    static bool waitForLine(QProcess& server, QByteArray& log, const QByteArray& text) {
        return TestSupport::waitUntil([&] {
            log += server.readAll();
            return log.contains(text) && log.endsWith('\n');
        });
    }

    StoreFiles m_files;
    std::unique_ptr<TestSupport::ChildProcess> m_server;
    QByteArray m_log;
    QString m_address;
};

QTEST_MAIN(StoreServerTest)
#include "StoreServerTest.moc"
