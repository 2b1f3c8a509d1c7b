#include "store/client/StoreClient.h"

#include <QLoggingCategory>
#include <QTemporaryDir>

#include "core/base/SettingsStore.h"
#include "store/client/VeskClientDefaultApi.h"
#include "store/client/VeskClientHttpRequestInput.h"
#include "store/client/VeskClientHttpRequestWorker.h"
#include "store/client/VeskClientParameters.h"
#include "support/HttpServer.h"
#include "support/LogCapture.h"
#include "support/Table.h"
#include "support/TestHome.h"

using namespace OpenAPI;
using TestSupport::LogCapture;
using TestSupport::Table;

namespace {

const QByteArray OneApp = R"({"result":true,"code":200,"data":{"list":[{"appId":7,"appName":"Seven"}]}})";
const char AppsQuery[] = "apps?category=3&pageIndex=1&pageSize=20&field=score&sort=desc";

VeskClientPagination firstPage() {
    VeskClientPagination page;
    page.setPageSize(20);
    page.setPageIndex(1);
    return page;
}

void list(VeskClientDefaultApi* api) {
    VeskClientFieldSort sort;
    sort.setField("score");
    sort.setSort("desc");
    api->listApps(3, firstPage(), sort);
}

}  // namespace

class StoreClientTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() {
        m_server = std::make_unique<TestSupport::HttpServer>();
        m_server->files[AppsQuery] = OneApp;
        m_server->files["app%2F1%20%C3%BC"] = "Name: One";
        settingsStore()->setOption("client.base_url.", "");
    }

    void takesItsAddress() {
        LogCapture log;
        settingsStore()->setOption("client.base_url.", m_server->address({}).chopped(1));
        std::unique_ptr<VeskClientDefaultApi> api(makeStoreClient());
        QSignalSpy good(api.get(), &VeskClientDefaultApi::listAppsSignal);
        QSignalSpy all(api.get(), &VeskClientDefaultApi::allPendingRequestsCompleted);
        list(api.get());
        QVERIFY(good.wait());
        QCOMPARE(all.size(), 1);
        const auto answer = good[0][0].value<VeskClientAppInfoResponse>();
        QCOMPARE(answer.getData().getList()[0].getAppName(), QString("Seven"));
        QCOMPARE(log.count("Using test server: " + m_server->address({}).chopped(1)), 1);
        QCOMPARE(m_server->requests, QStringList(QString("vesk/client/%1@0").arg(AppsQuery)));
        const QByteArray head = m_server->heads[0];
        int place = 0;
        for (const QByteArray name :
             {"User-Agent: OpenAPI-Generator/1.0.0/cpp-qt",
              "X-VESK-Language: ", "X-VESK-Region: ", "X-VESK-OSBuild: ", "X-VESK-IsWayland: ",
              "X-VESK-BaselineMainVersion: ", "X-VESK-ClientVersion: 3.3.4.008", "X-VESK-BaselineVersion: ",
              "X-VESK-Arch: ", "X-VESK-Platform: ", "Accept-Encoding: identity"}) {
            QVERIFY2(head.indexOf(name, place) >= 0, (name + head).constData());
            place = head.indexOf(name, place);
        }
    }

    void categoryMayBeOmitted() {
        std::unique_ptr<VeskClientDefaultApi> api(makeStoreClient(m_server->address({}).chopped(1)));
        api->listApps({}, firstPage(), {});
        QTRY_COMPARE(m_server->requests, QStringList("vesk/client/apps?pageIndex=1&pageSize=20@0"));
    }

    void manifestIsTheRawAnswer() {
        std::unique_ptr<VeskClientDefaultApi> api(makeStoreClient(m_server->address({}).chopped(1)));
        QByteArray response;
        connect(api.get(), &VeskClientDefaultApi::downloadYmlSignalFull, this,
                [&](VeskClientHttpRequestWorker* worker) { response = worker->response; });
        api->downloadYml(QString::fromUtf8("app/1 ü"));
        QTRY_COMPARE(response, QByteArray("Name: One"));
    }

    void failsOnce_data() {
        const Table<QString, QNetworkReply::NetworkError, QString> row("vice", "error", "text");
        row("missing", "gone", QNetworkReply::ContentNotFoundError, "");
        row("late", "silent", QNetworkReply::TimeoutError, "Timed out waiting for response");
        row("a trickle", "slow", QNetworkReply::TimeoutError, "Timed out waiting for response");
        row("cut", "half", QNetworkReply::RemoteHostClosedError, "");
        row("in a circle", "loop", QNetworkReply::TooManyRedirectsError, "");
    }
    void failsOnce() {
        QFETCH(QString, vice);
        QFETCH(QNetworkReply::NetworkError, error);
        QFETCH(QString, text);
        if (vice == "gone")
            m_server->files.clear();
        std::unique_ptr<VeskClientDefaultApi> api(makeStoreClient(m_server->address(vice)));
        api->setTimeOut(300);
        QSignalSpy good(api.get(), &VeskClientDefaultApi::listAppsSignal);
        QSignalSpy bad(api.get(), &VeskClientDefaultApi::listAppsSignalE);
        QSignalSpy worded(api.get(), &VeskClientDefaultApi::listAppsSignalErrorFull);
        QSignalSpy all(api.get(), &VeskClientDefaultApi::allPendingRequestsCompleted);
        list(api.get());
        QVERIFY(all.wait());
        QCOMPARE(bad.size(), 1);
        QCOMPARE(bad[0][1].value<QNetworkReply::NetworkError>(), error);
        QCOMPARE(worded.size(), 1);
        if (!text.isEmpty())
            QCOMPARE(worded[0][2].toString(), text + ", ");
        if (vice == "gone")
            QVERIFY(worded[0][2].toString().endsWith(", gone"));
        QCOMPARE(good.size(), 0);
    }

    void packedAnswersAreLost() {
        std::unique_ptr<VeskClientDefaultApi> api(makeStoreClient(m_server->address("packed")));
        QSignalSpy good(api.get(), &VeskClientDefaultApi::listAppsSignal);
        list(api.get());
        QVERIFY(good.wait());
        QVERIFY(!good[0][0].value<VeskClientAppInfoResponse>().isSet());
    }

    void abortEndsAll() {
        std::unique_ptr<VeskClientDefaultApi> api(makeStoreClient(m_server->address("silent")));
        QSignalSpy bad(api.get(), &VeskClientDefaultApi::listAppsSignalE);
        QSignalSpy all(api.get(), &VeskClientDefaultApi::allPendingRequestsCompleted);
        list(api.get());
        api->getCategories();
        Q_EMIT api->abortRequests();
        QCOMPARE(all.size(), 1);
        QCOMPARE(bad.size(), 0);
        // The client may go while a request is under way, and in the slot of one that has ended.
        list(api.get());
        api.reset();
        auto* other = makeStoreClient(m_server->address({}).chopped(1));
        connect(other, &VeskClientDefaultApi::listAppsSignal, other, &QObject::deleteLater);
        QSignalSpy gone(other, &QObject::destroyed);
        list(other);
        QVERIFY(gone.wait());
    }

    void logsByReflection() {
        LogCapture log;
        QLoggingCategory::setFilterRules("common.veskhttp.debug=true");
        std::unique_ptr<VeskClientDefaultApi> api(makeStoreClient(m_server->address("gone")));
        QLoggingCategory::setFilterRules({});
        QVERIFY(log.lines().isEmpty() || !log.contains("Cannot find slot"));
        QLoggingCategory::setFilterRules("common.veskhttp.debug=true");
        QSignalSpy all(api.get(), &VeskClientDefaultApi::allPendingRequestsCompleted);
        api->getCategories();
        QVERIFY(all.wait());
        QLoggingCategory::setFilterRules({});
        QVERIFY2(log.contains("Response for getCategoriesSignalErrorFull:\ngone\n"), qPrintable(log.text()));
        QVERIFY(log.contains("Error: "));
    }

    void records_data() {
        const Table<QByteArray, bool, bool, QByteArray> row("json", "isSet", "isValid", "written");
        const QByteArray texts =
            R"("appInfoId":"a","appName":"n","iconSaveKey":"i","packageVersion":"1","briefInfo":"b",)"
            R"("descInfo":"d","devName":"d","devEmail":"e","officialSite":"s","downloadUrl":"u",)"
            R"("packageSize":5,"recommend":0,)";
        row("whole", "{" + texts + R"("appId":12,"score":5})", true, true, R"("appId":12)");
        row("a null", "{" + texts + R"("appId":12,"score":null})", true, false, R"("appId":12)");
        row("a number as text", "{" + texts + R"("appId":"12","score":5})", true, false, R"("appId":0)");
        row("a number that is too large", "{" + texts + R"("appId":12,"score":3e9})", true, false,
            R"("score":0)");
        row("a number for a text", R"({"appName":1234567.8})", true, false, R"("appName":"1.23457e+06")");
        row("a list for a text", R"({"appName":[1]})", true, false, R"("appName":"")");
        row("no object", "[1]", false, false, "{}");
        row("cut", R"({"appId":1)", false, false, "{}");
    }
    void records() {
        QFETCH(QByteArray, json);
        QFETCH(QByteArray, written);
        const VeskClientAppInfo app(QString::fromUtf8(json));
        QTEST(app.isSet(), "isSet");
        QTEST(app.isValid(), "isValid");
        const QByteArray text = QJsonDocument(app.asJsonObject()).toJson(QJsonDocument::Compact);
        QVERIFY2(text.contains(written), text.constData());
    }

    void parametersStyles_data() {
        const Table<QString, QString, QString, QString, QString> row("style", "prefix", "suffix", "exploded",
                                                                     "united");
        row("matrix", "matrix", ";", "=", ";n=", ",");
        row("label", "label", ".", "", ".", ",");
        row("form, which is the ordinary one", "", "&", "=", "&n=", ",");
        row("pipeDelimited", "pipeDelimited", "&", "=", "&n=", "|");
        row("deepObject", "deepObject", "none", "none", "&", "none");
        row("unknown", "x", "none", "none", "none", "none");
    }
    void parametersStyles() {
        QFETCH(QString, style);
        QTEST(VeskClientParameters::stylePrefix(style), "prefix");
        QTEST(VeskClientParameters::styleSuffix(style), "suffix");
        QTEST(VeskClientParameters::styleDelimiter(style, "n", true), "exploded");
        QTEST(VeskClientParameters::styleDelimiter(style, "n", false), "united");
        QString url = "http://store/";
        VeskClientParameters::addQueryParameter(&url, "k", QString("a&b"));
        VeskClientParameters::addQueryParameter(&url, "page", QJsonObject{{"b", true}, {"a", 1.5}},
                                                "deepObject");
        QCOMPARE(url, QString("http://store/?k=a%26b&page[a]=1.5&page[b]=true"));
    }

    void sendsForms() {
        QTemporaryDir directory;
        QFile file(directory.filePath("logo.png"));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("PNG") == 3);
        file.close();
        VeskClientHttpRequestInput input(m_server->address(AppsQuery), "POST");
        input.var_layout = MULTIPART;
        input.add_var("name", "One");
        input.add_file({"logo", file.fileName(), QString::fromUtf8("bild ü.png"), "image/png"});
        input.add_file({"none", "/nonexistent", "none", "text/plain"});
        VeskClientHttpRequestWorker worker;
        QSignalSpy finished(&worker, &VeskClientHttpRequestWorker::on_execution_finished);
        worker.execute(input);
        QVERIFY(finished.wait());
        const QByteArray body = m_server->bodies.value(0);
        QVERIFY2(body.contains("form-data; name=\"name\"\r\nContent-Type: text/plain\r\n\r\nOne\r\n"),
                 body.constData());
        QVERIFY2(
            body.contains("name=\"logo\"; filename=\"bild ü.png\"; filename*=utf-8''bild%20%C3%BC.png\r\n"),
            body.constData());
        QVERIFY(!body.contains("none"));
    }

    void storesFilesOfAnswers() {
        QTemporaryDir directory;
        m_server->files["form"] =
            "--B\r\nContent-Disposition: form-data; name=\"yml\"; filename=\"../..\\\\a.yml\"\r\n\r\nName: "
            "x\r\n"
            "--B\r\nContent-Disposition: form-data; name=\"note\"\r\n\r\nhello\r\n--B--\r\n";
        m_server->contentType = "multipart/form-data; boundary=B";
        VeskClientHttpRequestWorker worker;
        worker.setWorkingDirectory(directory.path());
        QSignalSpy finished(&worker, &VeskClientHttpRequestWorker::on_execution_finished);
        worker.execute(VeskClientHttpRequestInput(m_server->address("form")));
        QVERIFY(finished.wait());
        QCOMPARE(worker.multiPartFields.value("note"), QString("hello"));
        const HttpFileElement file = worker.getHttpFileElement("yml");
        QCOMPARE(file.local_filename, directory.filePath("a.yml"));
        QCOMPARE(file.readFile(), QByteArray("Name: x"));
        QVERIFY(worker.response.isEmpty());
    }

private:
    TestSupport::TestHome m_home;
    std::unique_ptr<TestSupport::HttpServer> m_server;
};

QTEST_GUILESS_MAIN(StoreClientTest)
#include "StoreClientTest.moc"
