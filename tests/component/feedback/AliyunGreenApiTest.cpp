#include "feedback/client/AliyunGreenApi.h"

#include <QUrlQuery>

#include "feedback/client/ModerationVerdict.h"
#include "feedback/client/RpcSignature.h"
#include "support/HttpServer.h"
#include "support/Table.h"

using TestSupport::Table;

class AliyunGreenApiTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // By hand: the three parameters sorted by name give the query
    //   AccessKeyId=testid&Action=TextModerationPlus&ServiceParameters=%7B%22content%22%3A%22%E7%BA%B8%20a%2B%2A~%22%7D
    // which is encoded once more for the text below. Its HMAC is what this prints:
    //   printf %s "$TEXT" | openssl dgst -sha1 -hmac 'testsecret&' -binary | base64
    void signsAsDocumented() {
        const RpcSignature::Parameters parameters{
            {"ServiceParameters", QString::fromUtf8("{\"content\":\"纸 a+*~\"}")},
            {"Action", "TextModerationPlus"},
            {"AccessKeyId", "testid"}};
        QCOMPARE(RpcSignature::stringToSign(parameters),
                 QByteArray("POST&%2F&AccessKeyId%3Dtestid%26Action%3DTextModerationPlus%26ServiceParameters"
                            "%3D%257B%2522content%2522%253A%2522%25E7%25BA%25B8%2520a%252B%252A~%2522%257D"));
        QCOMPARE(RpcSignature::sign(parameters, "testsecret"), QByteArray("Qx6Cspr/mF7p2Dem8ejSwMOLWko="));
    }

    /// The server checks the signature over what has arrived.
    void asks() {
        m_server.files["check"] = R"({"Data":{"RiskLevel":"none"}})";
        AliyunGreenApi api("testid", "testsecret");
        api.setEndpoint(m_server.address("check"));
        QSignalSpy replied(&api, &AliyunGreenApi::replyOccurred);
        for (int i = 0; i < 20; ++i)  // some signatures have a "+"
            api.checkContent(QString::fromUtf8("纸 & \"a+b\"\n%1").arg(i));
        QTRY_COMPARE(replied.size(), 20);
        QCOMPARE(replied[0][0].toString(), QString::fromUtf8(m_server.files["check"]));
        for (const QByteArray& head : qAsConst(m_server.heads)) {
            for (const char* part : {"POST ", "Content-Length: 0\r\n", "Accept-Charset: utf-8\r\n",
                                     "Content-Type: application/x-www-form-urlencoded\r\n"})
                QVERIFY2(head.contains(part), part);
            RpcSignature::Parameters sent;
            QStringList names;
            // A server reads a bare plus sign as a blank.
            const QString query = QString::fromLatin1(head.split(' ')[1].split('?')[1].replace('+', ' '));
            for (const auto& [name, value] : QUrlQuery(query).queryItems(QUrl::FullyDecoded)) {
                names += name;
                sent[name] = value;
            }
            QCOMPARE(names.size(), 11);
            QCOMPARE(names.mid(6, 3).join(' '), QString("SignatureNonce Timestamp ServiceParameters"));
            const QString signature = sent.take("Signature");
            QCOMPARE(signature, QString::fromLatin1(RpcSignature::sign(sent, "testsecret")));
            QVERIFY(QDateTime::fromString(sent["Timestamp"], "yyyy-MM-ddTHH:mm:ssZ").isValid());
        }
    }

    void fails_data() {
        const Table<QString, QString, QString> row("key", "path", "error");
        row("no credentials", "", "check", "no account");
        row("no address", "id", "", "no account");
        row("told what it sent", "testid", "half/echo", "Response: AccessKeyId=***");
        row("refused", "testid", "gone", "Response: gone");
    }
    void fails() {
        QFETCH(QString, key);
        QFETCH(QString, path);
        QFETCH(QString, error);
        m_server.files["echo"] = "AccessKeyId=testid" + QByteArray(18, ' ');
        AliyunGreenApi api(key, key);
        api.setEndpoint(path.isEmpty() ? QString() : m_server.address(path));
        QSignalSpy failed(&api, &AliyunGreenApi::errorOccurred);
        api.checkContent("a");
        QVERIFY(failed.isEmpty() && failed.wait());
        const QString text = failed[0][0].toString();
        QVERIFY2(text.contains(error) && !text.contains("testid"), qPrintable(text));
    }

    void verdict() {
        for (const char* level : {"\"high\"", "\"a new word\"", "null"})
            QVERIFY2(ModerationVerdict::isRefused(QString(R"({"Data":{"RiskLevel":%1}})").arg(level)), level);
        for (const char* reply : {R"({"Data":{"RiskLevel":"none"}})", R"({"RiskLevel":"high"})", "<html>"})
            QVERIFY2(!ModerationVerdict::isRefused(reply), reply);
    }

private:
    TestSupport::HttpServer m_server;
};

QTEST_GUILESS_MAIN(AliyunGreenApiTest)
#include "AliyunGreenApiTest.moc"
