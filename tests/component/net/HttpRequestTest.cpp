#include "net/HttpRequest.h"

#include <QBuffer>
#include <QNetworkAccessManager>

#include "support/HttpServer.h"
#include "support/Table.h"

using Error = HttpAnswer::Error;
using TestSupport::Table;
Q_DECLARE_METATYPE(Error)

class HttpRequestTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() {
        m_server = std::make_unique<TestSupport::HttpServer>();
        m_server->files = {{"json", R"({"status":200})"},
                           {"list", "[1]"},
                           {"text", "{\"status\""},
                           {"long", QByteArray(5000, 'x')}};
        m_manager = std::make_unique<QNetworkAccessManager>();
        m_request = std::make_unique<HttpRequest>(m_manager.get());
        m_request->setLimits({10000, 10000, 5000});
        connect(m_request.get(), &HttpRequest::finished, this, [this](const HttpAnswer& answer) {
            ++m_ends;
            m_answer = answer;
        });
        m_ends = 0;
        m_answer = {};
    }

    void gets_data() {
        const Table<QString, int, int, int, Error, int, QByteArray> row("path", "wholeMs", "silenceMs",
                                                                        "limit", "error", "status", "body");
        const QByteArray json = R"({"status":200})";
        const QByteArray whole(5000, 'x');
        row("ok", "json", 0, 0, 5000, Error::None, 200, json);
        row("as large as allowed", "long", 0, 0, 5000, Error::None, 200, whole);
        row("too large", "long", 0, 0, 4999, Error::TooLarge, 0, {});
        row("longer than it says", "endless/long", 0, 0, 5000, Error::TooLarge, 0, {});
        row("compressed unasked stays so", "packed/long", 0, 0, 5000, Error::None, 200, whole);
        row("missing", "gone", 0, 0, 5000, Error::Status, 404, "gone");
        row("no answer", "silent/json", 0, 80, 5000, Error::TimedOut, 0, {});
        row("no more in the middle", "stalled/json", 0, 80, 5000, Error::TimedOut, 0, json.left(7));
        row("a trickle", "slow/long", 150, 10000, 9000, Error::TimedOut, 0, {});
        row("breaks off", "half/long", 0, 0, 5000, Error::Network, 200, whole.left(2500));
        row("redirected", "moved/moved/json", 0, 0, 5000, Error::None, 200, json);
        row("redirected in a circle", "loop/json", 0, 0, 5000, Error::Redirect, 302, {});
        row("redirected to a local file", "away/json", 0, 0, 5000, Error::Redirect, 302, {});
    }
    void gets() {
        QFETCH(QString, path);
        QFETCH(int, wholeMs);
        QFETCH(int, silenceMs);
        QFETCH(int, limit);
        QFETCH(QByteArray, body);
        m_request->setLimits({wholeMs, silenceMs, limit});
        m_request->send("GET", QNetworkRequest(QUrl(m_server->address(path))));
        QTRY_COMPARE(m_ends, 1);
        QTEST(m_answer.error, "error");
        QTEST(m_answer.status, "status");
        if (path.startsWith("slow"))
            QVERIFY(m_answer.body.startsWith(whole().left(2500)));
        else
            QCOMPARE(m_answer.body, body);
        QCOMPARE(m_answer.errorText.isEmpty(), m_answer.error == Error::None);
        QVERIFY(m_server->requests.size() <= 1 + HttpRequest::MaxRedirects);
        m_request->abort();
        QCOMPARE(m_ends, 1);
    }

    /// Into a device: within the limit, over it, cut off, and where nothing can be written.
    void fillsItsTarget_data() {
        const Table<QString, int, bool, Error, int> row("path", "limit", "isWritable", "error", "written");
        row("whole", "long", 5000, true, Error::None, 5000);
        row("too large", "long", 4999, true, Error::TooLarge, 0);
        row("breaks off", "half/long", 5000, true, Error::Network, 2500);
        row("full disk", "long", 5000, false, Error::File, 0);
    }
    void fillsItsTarget() {
        QFETCH(int, limit);
        QFETCH(bool, isWritable);
        QFETCH(QString, path);
        QBuffer target;
        target.open(isWritable ? QIODevice::WriteOnly : QIODevice::ReadOnly);
        m_request->setLimits({10000, 10000, limit});
        m_request->setTarget(&target);
        m_request->send("GET", QNetworkRequest(QUrl(m_server->address(path))));
        QTRY_COMPARE(m_ends, 1);
        QTEST(m_answer.error, "error");
        QCOMPARE(m_answer.body, QByteArray());
        QFETCH(int, written);
        if (m_answer.error != Error::TooLarge)
            QCOMPARE(target.size(), written);
    }

    void readsJson_data() {
        const Table<QString, Error> row("path", "error");
        row("object", "json", Error::None);
        row("array", "list", Error::Json);
        row("cut", "text", Error::Json);
        row("failed before", "gone", Error::Status);
    }
    void readsJson() {
        QFETCH(QString, path);
        m_request->send("GET", QNetworkRequest(QUrl(m_server->address(path))));
        QTRY_COMPARE(m_ends, 1);
        const QJsonObject object = m_answer.readJson();
        QTEST(m_answer.error, "error");
        QCOMPARE(object["status"].toInt(), m_answer.error == Error::None ? 200 : 0);
        QCOMPARE(m_answer.errorText.isEmpty(), m_answer.error == Error::None);
    }

    void sendsBodies() {
        const QByteArray body(9000, 'b');
        QFile file(m_home.filePath("body"));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(body) == body.size());
        file.close();
        QNetworkRequest request(QUrl(m_server->address("json")));
        request.setHeader(QNetworkRequest::ContentTypeHeader, "application/octet-stream");
        QSignalSpy progress(m_request.get(), &HttpRequest::uploadProgress);
        m_request->sendFile("PUT", request, file.fileName());
        QTRY_COMPARE(m_ends, 1);
        QCOMPARE(m_answer.error, Error::None);
        QVERIFY(progress.contains(QVariantList({9000, 9000})));
        HttpRequest redirected(m_manager.get());
        QSignalSpy finished(&redirected, &HttpRequest::finished);
        request.setUrl(QUrl(m_server->address("moved/json")));
        redirected.send("POST", request, "signed");
        QTRY_COMPARE(finished.size(), 1);
        QCOMPARE(finished[0][0].value<HttpAnswer>().error, Error::Status);
        QCOMPARE(m_server->bodies, QByteArrayList({body, "signed"}));
    }

    void refusesWithoutSending_data() {
        const Table<QString, QString, Error> row("address", "file", "error");
        row("local address", "file:///etc/hostname", "/etc/hostname", Error::Network);
        row("missing file", "http://127.0.0.1:1/", "/nonexistent", Error::File);
        row("no regular file", "http://127.0.0.1:1/", "/dev/null", Error::File);
        row("no server", "http://127.0.0.1:1/", "/etc/hostname", Error::Network);
    }
    void refusesWithoutSending() {
        QFETCH(QString, address);
        QFETCH(QString, file);
        m_request->sendFile("PUT", QNetworkRequest(QUrl(address)), file);
        QCOMPARE(m_ends, 0);
        QTRY_COMPARE(m_ends, 1);
        QTEST(m_answer.error, "error");
    }

    void endsEarly_data() {
        const Table<QString, int> row("what", "ends");
        row("aborted", "abort", 1);
        row("deleted", "request", 0);
        row("manager deleted", "manager", 1);
    }
    void endsEarly() {
        QFETCH(QString, what);
        m_request->send("GET", QNetworkRequest(QUrl(m_server->address("stalled/long"))));
        QSignalSpy progress(m_request.get(), &HttpRequest::downloadProgress);
        QVERIFY(progress.wait());
        if (what == "abort")
            m_request->abort();
        else if (what == "request")
            m_request.reset();
        else
            m_manager.reset();
        QTEST(m_ends, "ends");
        QCOMPARE(m_answer.error, m_ends ? Error::Aborted : Error::None);
        m_request.reset();
        QTEST(m_ends, "ends");
    }

private:
    static QByteArray whole() { return QByteArray(5000, 'x'); }

    QTemporaryDir m_home;
    std::unique_ptr<TestSupport::HttpServer> m_server;
    std::unique_ptr<QNetworkAccessManager> m_manager;
    std::unique_ptr<HttpRequest> m_request;  ///< after its manager, so that it goes first
    HttpAnswer m_answer;
    int m_ends = 0;
};

QTEST_GUILESS_MAIN(HttpRequestTest)
#include "HttpRequestTest.moc"
