#include "feedback/client/FeedBackApi.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <memory>

#include "core/base/SettingsStore.h"
#include "feedback/client/FeedbackDeployment.h"
#include "feedback/client/ReportSignature.h"
#include "support/HttpServer.h"
#include "support/LogCapture.h"
#include "support/Table.h"
#include "support/TestHome.h"

using TestSupport::LogCapture;
using TestSupport::Table;

class FeedBackApiTest : public QObject {
    Q_OBJECT

    TestSupport::TestHome m_home;
    TestSupport::HttpServer m_server;
    FeedBackApi m_api;
    std::unique_ptr<QObject> m_dialog;
    int m_ends = 0;
    bool m_ok = false;
    QString m_desc;

    void setService(const QString& path) {
        const QString address = m_server.address(path);
        settingsStore()->setOption("feedback.cfg.base_url", path.isNull() ? QString() : address.chopped(1));
    }
    void submit() {
        m_api.submitFeedback({{"issueDesc", "d"}}, {"win10", "box64 1", "wine\r\nX-Own: 1"}, m_dialog.get(),
                             [this](bool ok, const QString& desc) {
                                 ++m_ends;
                                 m_ok = ok;
                                 m_desc = desc;
                             });
    }

private Q_SLOTS:
    void init() {
        settingsStore()->setOption("feedback.cfg.secret", "s3cret");
        m_server.files = {{"feedback", R"({"status":200})"}};
        m_server.heads.clear();
        m_server.bodies.clear();
        m_dialog = std::make_unique<QObject>();
        m_ends = 0;
        m_api.setTimeOut(FeedBackApi::TimeOutMs);
        setService("");
    }

    // By hand: the fields in order, without the empty text, the object, the switch and the old signature:
    //   printf %s 'appNameAbig1.23457e+06imgKeys["k1","k2"]nounceabcdEFGHscore3time1700000000000s3cret' |
    //   sha256sum
    void signsAsDocumented() {
        const QJsonObject body{{"score", 3},
                               {"big", 1234567},
                               {"appName", "A"},
                               {"appVersion", ""},
                               {"flag", true},
                               {"hardware", QJsonObject{{"cpu", "x"}}},
                               {"imgKeys", QJsonArray{"k1", "k2"}},
                               {"sign", "old"}};
        const QJsonObject made = ReportSignature::sign(body, "s3cret", 1700000000000, "abcdEFGH");
        QCOMPARE(made["sign"].toString(),
                 QString("2f79f70fad1ef21a1bf7a05b10a227c6aca103db2dcc8aa43d3fb4c8d7516b58"));
        QVERIFY(made.contains("appVersion") && made["hardware"].isObject());
    }

    void reports() {
        const LogCapture log;
        submit();
        QCOMPARE(m_ends, 0);
        QTRY_VERIFY(m_ends == 1 && m_ok);
        QVERIFY(!log.text().contains("s3cret"));
        const QByteArray head = m_server.heads.value(0);
        QVERIFY(head.startsWith("POST /store-common-report/wineAssist/feedback HTTP"));
        for (const char* line : {"X-Device-Id: ", "X-Device-Arch: ", "X-Client-Ver: 3.3.4.008\r\n",
                                 "X-System-Info: ", "AcceptLanguage: en_US\r\n",
                                 "X-Wine-Ver: wine  X-Own: 1\r\n", "X-Windows-Ver: win10\r\n",
                                 "X-Simulator-Ver: box64 1\r\n", "Content-Type: application/json\r\n"})
            QVERIFY2(head.contains(line), line);
        const QJsonObject sent = QJsonDocument::fromJson(m_server.bodies.value(0)).object();
        QCOMPARE(sent["sign"], ReportSignature::sign(sent, "s3cret", sent["time"].toString().toLongLong(),
                                                     sent["nounce"].toString())["sign"]);
        QCOMPARE(sent["nounce"].toString().size(), 8);
    }

    void fails_data() {
        const Table<QString, QByteArray, QString, QString> row("path", "answer", "desc", "log");
        const QString status = "failed to get all feedBackType, status code ";
        row("refused", "", R"({"status":401,"desc":"no"})", "no", status + "401");
        row("no status", "", R"({"desc":"odd"})", "odd", status + "500");
        row("no JSON", "", "<html>", "", status + "500");
        row("breaks off", "half/", R"({"status":200,"desc":"x"})", "", "the report service failed:");
        row("too slow", "silent/", "", "", "the report service failed:");
        row("no service", QString(), "", "This version has no address to send to.", "nothing is sent:");
    }
    void fails() {
        QFETCH(QString, path);
        QFETCH(QByteArray, answer);
        QFETCH(QString, log);
        const LogCapture lines;
        m_server.files["feedback"] = answer;
        setService(path);
        m_api.setTimeOut(path == "silent/" ? 100 : FeedBackApi::TimeOutMs);
        submit();
        QTRY_COMPARE(m_ends, 1);
        QVERIFY(!m_ok);
        QTEST(m_desc, "desc");
        QVERIFY2(lines.text().contains(log), qPrintable(lines.text()));
        QCOMPARE(m_server.bodies.isEmpty(), path.isNull());
    }

    void access() {
        const LogCapture log;
        QVERIFY(BottleVersions::of("office", {}).runner.isEmpty());
        QVERIFY(log.text().contains("get bottles config failed: office"));
        QVERIFY(ReportAccess({"reports.example", "s"}).whyNot().contains("web address"));
        QVERIFY(ReportAccess({"http://a", ""}).whyNot().contains("secret"));
        const ReportAccess safe{"https://a", "s"}, local{"http://a", "s"};
        QVERIFY(safe.whyNot().isEmpty() && safe.trusts(QUrl("https://b")) && !safe.trusts(QUrl("http://a")));
        QVERIFY(local.trusts(QUrl("http://b")));
        QCOMPARE(FeedbackDeployment::decoded("610062").size(), 3);
    }

    void dialogGoesMeanwhile() {
        setService("silent/");
        submit();
        QTRY_COMPARE(m_server.bodies.size(), 1);
        init();
        submit();
        QTRY_COMPARE(m_ends, 1);
    }

    void asksForIssueTypes() {
        m_server.files["issueTypeDef"] =
            R"({"status":200,"datas":[{"id":7,"name":"n","enName":"e"},{"id":"8"}]})";
        QVector<IssueType> types(1);
        const auto take = [&types](const QVector<IssueType>& found) { types = found; };
        setService("other/");  // it would get the headers
        m_api.getIssueTypes(this, take);
        QTRY_VERIFY(types.isEmpty());
        QCOMPARE(m_server.heads.size(), 1);
        setService("");
        m_api.getIssueTypes(this, take);
        QTRY_COMPARE(types.size(), 2);
        QCOMPARE(types[0].id + types[0].name + types[0].enName + types[1].id, QString("7ne8"));
    }
};

QTEST_GUILESS_MAIN(FeedBackApiTest)
#include "FeedBackApiTest.moc"
