#include <QJsonArray>
#include <QJsonDocument>
#include <QTcpSocket>
#include <QUrl>
#include <csignal>

#include "core/base/SettingsStore.h"
#include "feedback/client/FeedBackApi.h"
#include "feedback/client/ReportSignature.h"
#include "feedback/client/UploadFilesManager.h"
#include "feedback/dialogs/FeedbackForm.h"
#include "support/StoreFiles.h"
#include "support/StoreServerProcess.h"
#include "support/Table.h"
#include "support/TestHome.h"

using TestSupport::Table;

namespace {

constexpr int WaitMs = 20000;
const QByteArray Png = QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\0\1\0\0\0\1", 24) + " picture";
const QByteArray Gif("GIF89a\1\0\1\0;", 11);
const QString Secret = "sixteen letters.";
const QByteArray Root = "/store-common-report/";

}  // namespace

/// The built server takes what the application's own client sends, and what others send instead.
class StoreReportsTest : public QObject {
    Q_OBJECT

    TestSupport::TestHome m_home;
    TestSupport::StoreFiles m_store;
    TestSupport::StoreServerProcess m_server{STORE_SERVER};
    QString m_reports = m_home.path() + "/reports";
    QString m_address;
    FeedBackApi m_api;

    void startServer(const QStringList& more = {}) {
        const QStringList arguments{"--data", m_store.path(), "--reports", m_reports};
        QVERIFY2(m_server.start(arguments + more), m_server.log().constData());
        m_address = m_server.address();
        settingsStore()->setOption("feedback.cfg.base_url", m_address);
    }
    /// The whole answer; its connection ends with it.
    QByteArray send(const QByteArray& verb, const QByteArray& path, const QByteArray& body,
                    const QByteArray& device = "other") const {
        QTcpSocket socket;
        socket.connectToHost("127.0.0.1", quint16(QUrl(m_address).port()));
        if (!socket.waitForConnected(WaitMs))
            return "no connection";
        socket.write(verb + ' ' + path + " HTTP/1.1\r\nHost: " + m_address.mid(7).toLatin1() +
                     "\r\nX-Device-Id: " + device + "\r\nConnection: close\r\nContent-Length: " +
                     QByteArray::number(body.size()) + "\r\n\r\n" + body);
        while (socket.state() == QAbstractSocket::ConnectedState && socket.waitForReadyRead(WaitMs)) {
        }
        return socket.readAll();
    }
    QByteArray post(const QByteArray& path, const QJsonObject& body) const {
        const QJsonObject whole = ReportSignature::sign(body, Secret);
        return send("POST", Root + path, QJsonDocument(whole).toJson());
    }
    QJsonObject newUpload(const char* type, const char* suffix) const {
        const QByteArray answer =
            post("file/getUploadInfo", {{"from", "wineAssist"}, {"type", type}, {"fileSuffix", suffix}});
        return QJsonDocument::fromJson(answer.mid(answer.indexOf("\r\n\r\n") + 4))
            .object()["datas"]
            .toArray()[0]
            .toObject();
    }
    QByteArray put(const QJsonObject& upload, const QByteArray& body) const {
        return send("PUT", upload["upload_url"].toString().mid(m_address.size()).toLatin1(), body);
    }
    QString list() const { return m_server.listedReports(m_reports); }
    bool submit(const QJsonObject& report) {
        int ends = 0;
        bool isGood = false;
        m_api.submitFeedback(report, {"win10", "", "wine-9"}, this, [&](bool ok, const QString& desc) {
            ++ends;
            isGood = ok;
            if (!ok)
                qWarning("%s", qPrintable(desc));
        });
        return TestSupport::waitUntil([&] { return ends > 0; }) && isGood;
    }
    bool score(const QString& app, int stars) {
        int ends = 0;
        bool isGood = false;
        m_api.submitAppScore({stars, app, "1", {}}, {}, this, [&](bool ok, const QString&) {
            ++ends;
            isGood = ok;
        });
        return TestSupport::waitUntil([&] { return ends > 0; }) && isGood;
    }
    QByteArray notes() const { return send("GET", "/vesk/client/appInfo?appId=7", {}); }

private Q_SLOTS:
    void initTestCase() {
        qunsetenv("CELLARIX_REPORT_SECRET");
        settingsStore()->setOption("feedback.cfg.secret", Secret);
        m_home.write("reports/secret", Secret.toLatin1().toHex() + '\n');
        m_store.add("notes", {7, "Notes", "记事本", 1, 50, 4});
        m_store.write("issue-types.yml", "- {id: crash, names: {en: Crashes, zh: 闪退}}\n");
        startServer();
    }

    void reportWithPicturesAndLogs() {
        QVector<IssueType> types;
        m_api.getIssueTypes(this, [&types](const QVector<IssueType>& found) { types = found; });
        QTRY_COMPARE(types.size(), 1);
        QCOMPARE(types[0].id + types[0].name + types[0].enName, QString::fromUtf8("crash闪退Crashes"));

        auto* uploads = UploadFilesManager::instance();
        QSignalSpy ended(uploads, &UploadFilesManager::sigUploadFinished);
        const QString picture = m_home.write("a.PNG", Png);
        const QString other = m_home.write("b.jpeg", "\xFF\xD8\xFF\xE0" + QByteArray(2000000, 'x'));
        const int logs = uploads->addTask({m_home.write("wine.log", "err:module")}, UploadFilesTask::Logs);
        QHash<int, QString> keys{{logs, {}},
                                 {uploads->addTask({picture}, UploadFilesTask::Image), {}},
                                 {uploads->addTask({other}, UploadFilesTask::Image), {}}};
        QTRY_COMPARE_WITH_TIMEOUT(ended.size(), 3, WaitMs);
        for (const QList<QVariant>& end : qAsConst(ended)) {
            QCOMPARE(end[0].value<UploadFilesTaskStatus>(), UploadFilesTaskStatus::Success);
            keys[end[3].toInt()] = end[2].toString();
        }
        QJsonObject report{{"issueTypes", QJsonArray{"crash"}},
                           {"issueDesc", QString::fromUtf8("It \x1b[31mfell\nover 倒了")},
                           {"appName", QString::fromUtf8("记事本")},
                           {"appVersion", "7.2"},
                           {"contactInfo", "a@b.example"},
                           {"imgKeys", QJsonArray{keys[logs + 1], keys[logs + 2]}},
                           {"logFileKey", keys[logs]},
                           {"hardwareInfo", QJsonObject{{"arch", "amd64"}, {"machine_id", "5ec2e7"}}}};
        QVERIFY(submit(report));
        QVERIFY(submit(report));  // as after a lost answer
        // Another device has the same keys.
        QVERIFY(post("wineAssist/feedback", report).startsWith("HTTP/1.1 400"));

        const QString table = list();
        QVERIFY2(table.contains("7.2           crash                     It ?[31mfell") &&
                     table.contains("a@b.example") && !table.contains("over") && !table.contains('\x1b'),
                 qPrintable(table));
        const QStringList files = table.split('\n').filter(m_reports).replaceInStrings("    ", "");
        QCOMPARE(files.size(), 4);
        QCOMPARE(TestSupport::readFile(files[0]), Png);
        QVERIFY(files[1].endsWith("/image-2.jpg") && files[2].endsWith("/logs.tar.gz"));
        QVERIFY(TestSupport::runProcess("tar", {"-tzf", files[2]}).output.contains("wine.log"));
        const QByteArray record = TestSupport::readFile(files[3]);
        QVERIFY2(
            record.contains("\"wine\":\"wine-9\"") && record.contains("amd64") && !record.contains("5ec2e7"),
            record.constData());
        // As long as the client lets its users write.
        QVERIFY(submit({{"issueTypes", QJsonArray{"crash"}},
                        {"issueDesc", QString(FeedbackRules::MaximumDescription, QChar(0x5012))},
                        {"appName", QString(FeedbackRules::MaximumName, QChar(0x5012))},
                        {"appVersion", QString(FeedbackRules::MaximumName, QChar(0x5012))},
                        {"contactInfo", QString(FeedbackRules::MaximumName, QChar(0x5012))},
                        {"downUrl", QString(FeedbackRules::MaximumAddress, QChar(0x5012))}}));
    }

    void scoresBecomeTheRating() {
        QVERIFY(notes().contains("\"score\":4"));
        QVERIFY(score("NOTES", 1));
        QVERIFY(score("Notes", 2));  // the same device thinks otherwise
        QTRY_VERIFY_WITH_TIMEOUT(notes().contains("\"score\":2"), WaitMs);
        QVERIFY(
            post("wineAssist/appScore", {{"appName", "记事本"}, {"score", 5}}).startsWith("HTTP/1.1 200"));
        QTRY_VERIFY_WITH_TIMEOUT(notes().contains("\"score\":4"), WaitMs);  // 3.5
        // Who does not say which device it is has no vote.
        const QJsonObject nobody = ReportSignature::sign({{"appName", "Notes"}, {"score", 5}}, Secret);
        QVERIFY(send("POST", Root + "wineAssist/appScore", QJsonDocument(nobody).toJson(), {})
                    .contains("\"status\":200"));
        QVERIFY(list().contains("2.0        1  notes"));
        const QJsonObject file = newUpload("attach", "tar.gz");
        QVERIFY(put(file, QByteArray("\x1F\x8B\x08\0settings", 12)).contains("\"status\":200"));
        const QJsonObject half{
            {"appName", QString("Half") + QChar(0xD83D)},  // of a character, as where one is cut
            {"score", 5},
            {"cfgFileKey", file["file_key"]}};
        QVERIFY(post("wineAssist/appScore", half).contains("\"status\":200"));
        QVERIFY(list().contains("score 5") && list().contains("/configuration.tar.gz\n"));
        startServer();
        QVERIFY(score("notes", 1));
        QTRY_VERIFY_WITH_TIMEOUT(notes().contains("\"score\":3"), WaitMs);
    }

    void refuses_data() {
        const Table<QByteArray, QJsonObject, QByteArray> row("path", "body", "answer");
        const QByteArray feedback = "wineAssist/feedback", upload = "file/getUploadInfo";
        row("nothing", feedback, {}, "issueTypes and issueDesc are empty");
        row("number for a text", feedback, {{"issueDesc", 3}}, "issueDesc is no text");
        row("long text", feedback, {{"issueDesc", QString(20001, 'x')}}, "issueDesc is no text");
        row("long body", feedback, {{"issueDesc", QString(140000, 'x')}}, "413");
        row("unknown key", feedback, {{"issueDesc", "d"}, {"imgKeys", QJsonArray{"../../own-key"}}},
            "a picture of the report is not here");
        row("unknown field", feedback, {{"issueDesc", "d"}, {"issueDescription", "d"}}, "not known");
        row("double slash", "/wineAssist//feedback", {}, "issueTypes and issueDesc are empty");
        row("another method's", "file/upload/x", {}, "405 Method Not Allowed");
        row("ten pictures", feedback,
            {{"issueDesc", "d"}, {"imgKeys", QJsonArray{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}}}, "at most 9");
        row("half a star", "wineAssist/appScore", {{"appName", "a"}, {"score", 2.5}}, "score is no whole");
        row("no name", "wineAssist/appScore", {{"appName", "\n"}, {"score", 2}}, "appName is empty");
        row("odd picture", upload, {{"type", "image"}, {"fileSuffix", "exe"}}, "only pictures");
        row("odd type", upload, {{"type", "x"}}, "neither image nor attach");
        row("elsewhere", "file/other", {}, "404");
    }
    void refuses() {
        QFETCH(QByteArray, path);
        QFETCH(QJsonObject, body);
        QFETCH(QByteArray, answer);
        const QByteArray said = post(path, body);
        QVERIFY2(said.contains(answer) && !said.contains("\"status\":200"), said.constData());
    }

    void refusesBodiesThatAreNotSigned() {
        const QByteArray path = Root + "wineAssist/feedback";
        const QJsonObject body = ReportSignature::sign({{"issueDesc", "once"}}, Secret);
        const QByteArray text = QJsonDocument(body).toJson();
        QVERIFY(send("POST", path, text).contains("\"status\":200"));
        QVERIFY(send("POST", path, text).contains("sent before"));
        QVERIFY(send("POST", path, QByteArray(text).replace("once", "more")).contains("signature is wrong"));
        QVERIFY(send("POST", path, "[").contains("no JSON object"));
        QVERIFY(send("POST", path, QByteArray(120000, '[')).contains("nested too deeply"));
        const QJsonObject late = ReportSignature::sign(body, Secret, 1700000000000, "abcdEFGH");
        QVERIFY(send("POST", path, QJsonDocument(late).toJson()).contains("check the clock"));
    }

    void uploadsAreOnceAndOfTheirKind() {
        const QJsonObject image = newUpload("image", "png");
        QVERIFY(put(image, "MZ no picture").startsWith("HTTP/1.1 415"));
        QVERIFY(put(image, Png + QByteArray(2 << 20, 'x')).contains("too large"));
        QVERIFY(put(image, Png).contains("\"status\":200"));  // the others have left nothing
        QVERIFY(put(image, Png).contains("used before"));
        const QString address = image["upload_url"].toString();
        for (const QString& other :
             {QString(address).replace("sig=", "sig=0"), QString(address).replace("until=", "until=9"),
              QString(address).replace("/upload/i", "/upload/a")})
            QVERIFY(put({{"upload_url", other}}, Png).contains("not valid"));
        QVERIFY(put(newUpload("attach", "tar.gz"), Png).startsWith("HTTP/1.1 415"));
        QVERIFY(send("POST", "/nowhere", "x").contains("404 Not Found"));
        // A client that goes in the middle.
        const QJsonObject broken = newUpload("image", "gif");
        QTcpSocket socket;
        socket.connectToHost("127.0.0.1", quint16(QUrl(m_address).port()));
        socket.write("PUT " + broken["upload_url"].toString().mid(m_address.size()).toLatin1() +
                     " HTTP/1.1\r\nHost: h\r\nContent-Length: 100\r\n\r\nGIF89a");
        const QString half = m_reports + "/incoming/" + broken["file_key"].toString();
        QTRY_VERIFY(QFile::exists(half));
        QVERIFY(put(broken, Gif).contains("used before"));
        socket.disconnectFromHost();
        QTRY_VERIFY(!QFile::exists(half));
        QVERIFY(put(broken, Gif).contains("\"status\":200"));
    }

    void fullServerSaysSo() {
        startServer({"--reports-room", "1"});
        const QByteArray answer = post("file/getUploadInfo", {{"type", "attach"}});
        QVERIFY2(answer.startsWith("HTTP/1.1 507") && answer.contains("no room"), answer.constData());
    }

    void devicesAreLimited() {
        QByteArray answer;
        for (int count = 0; count < 50 && !answer.contains("429"); ++count)
            answer = post("file/getUploadInfo", {});
        QVERIFY2(answer.contains("too many requests") && answer.contains("Retry-After: 60"),
                 answer.constData());
    }

    void needsASecretAndItsDirectory() {
        const auto start = [this](const QString& reports) {
            return TestSupport::runProcess(STORE_SERVER, {"--data", m_store.path(), "--reports", reports})
                .errors;
        };
        QVERIFY(start(m_home.path()).contains("Reports need a secret"));
        QVERIFY(start(m_reports).contains("another server uses it"));
        const QStringList plainly{"--list-reports", m_reports};
        QCOMPARE(TestSupport::runProcess(STORE_SERVER, plainly).output, list());
        m_home.write("odd/secret", "not hexadecimal");
        QVERIFY(start(m_home.path() + "/odd").contains("Reports need a secret"));
    }
};

QTEST_GUILESS_MAIN(StoreReportsTest)
#include "StoreReportsTest.moc"
