#include <utime.h>
#include <QJsonArray>
#include <QtTest>

#include "storeserver/reports/JsonScan.h"
#include "storeserver/reports/ReportDirectory.h"
#include "storeserver/reports/ReportGate.h"
#include "storeserver/reports/ReportList.h"
#include "storeserver/reports/ReportSignature.h"
#include "storeserver/request/ClientAddress.h"
#include "support/Table.h"

using namespace StoreServer;
using TestSupport::Table;

namespace {

constexpr qint64 Now = 1700000000000;
constexpr qint64 Hour = 60 * 60 * 1000;

}  // namespace

class StoreReportRulesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // The sum is what this prints:
    //   printf %s 'appNameAbig1.23457e+06imgKeys["k1","k2"]nounceabcdEFGHscore3time1700000000000s3cret' |
    //   sha256sum
    void knowsTheSignature() {
        QJsonObject body{{"score", 3},
                         {"big", 1234567},
                         {"appName", "A"},
                         {"appVersion", ""},
                         {"flag", true},
                         {"hardware", QJsonObject{{"cpu", "x"}}},
                         {"imgKeys", QJsonArray{"k1", "k2"}},
                         {"nounce", "abcdEFGH"},
                         {"time", "1700000000000"},
                         {"sign", "2f79f70fad1ef21a1bf7a05b10a227c6aca103db2dcc8aa43d3fb4c8d7516b58"}};
        QVERIFY(ReportSignature::isGood(body, ReportSignature::secretOf("733363726574")));
        QVERIFY(!ReportSignature::isGood(body, "other") && !ReportSignature::isGood(body, {}));
        body["score"] = 4;
        QVERIFY(!ReportSignature::isGood(body, "s3cret"));
        QVERIFY(ReportSignature::secretOf("7333636").isEmpty());
    }

    void nouncesAreRememberedWhileTheyMatter() {
        using Verdict = NounceLedger::Verdict;
        const qint64 window = NounceLedger::WindowMs;
        NounceLedger ledger;
        QVERIFY(ledger.enter("a", Now + window, Now) == Verdict::Fresh);
        QVERIFY(ledger.enter("a", Now + window, Now + 2 * window) == Verdict::Used);
        QVERIFY(ledger.enter("a", Now + 3 * window, Now + 2 * window + 1) == Verdict::Fresh);
        for (const qint64 time : {Now - window - 1, Now + window + 1, std::numeric_limits<qint64>::min()})
            QVERIFY(ledger.enter("b", time, Now) == Verdict::OutOfTime);
        for (int count = 1; count < NounceLedger::MostNounces; ++count)
            ledger.enter(QString::number(count), Now + 2 * window, Now + 2 * window + 1);
        QVERIFY(ledger.enter("c", Now + 2 * window, Now + 2 * window + 1) == Verdict::Full);
    }

    void tokensComeBackWithTime() {
        RateLimiter limiter({2, 1000, 3});
        QVERIFY(limiter.take("a", Now) && limiter.take("a", Now) && !limiter.take("a", Now + 999));
        QVERIFY(limiter.take("a", Now + 1998) && !limiter.take("a", Now - Hour));  // a clock that was set
        for (const char* key : {"b", "c", "d"})
            QVERIFY(limiter.take(key, Now));
        QVERIFY(limiter.take("a", Now));  // forgotten for the others
    }

    void clientIsBehindTheProxy_data() {
        const Table<QString, QString, QString> row("peer", "forwarded", "client");
        row("direct", "192.0.2.1", "203.0.113.9", "192.0.2.1");
        row("proxy", "127.0.0.1", "evil, 198.51.100.4 , 203.0.113.9", "203.0.113.9");
        row("mapped proxy", "::ffff:127.0.0.1", "203.0.113.9", "203.0.113.9");
        row("sixth", "::1", "2001:db8:1:2:3:4:5:6", "2001:db8:1:2::");
        row("no proxy", "127.0.0.1", "", "127.0.0.1");
        row("nonsense", "127.0.0.1", "unknown", "127.0.0.1");
    }
    void clientIsBehindTheProxy() {
        QFETCH(QString, peer);
        QFETCH(QString, forwarded);
        QTEST(QString::fromStdString(clientAddress(peer.toStdString(), forwarded.toStdString())), "client");
    }

    void scansBodies_data() {
        const Table<QByteArray, bool> row("bytes", "isParsable");
        const QByteArray brackets(30, '[');
        row("deep", QByteArray(16, '['), true);
        row("too deep", QByteArray(17, '['), false);
        row("brackets in a text", "{\"a\":\"]\\\"" + brackets + "\"}", true);
        row("closed ones", QByteArray("[]").repeated(20), true);
        row("key twice", "{\"a\":[1],\"b\":{\"c\":1}, \"a\" :[2]}", false);
        row("key in two objects", "{\"a\":[{\"a\":1},{\"a\":2}]}", true);
        row("key with an escape", "{\"a\":1,\"\\u0061\":2}", false);
        row("text with an escape", "{\"a\":\"\\u0061\",\"b\":2}", true);
        row("half a text", "{\"a\\", true);
    }
    void scansBodies() {
        QFETCH(QByteArray, bytes);
        QTEST(isParsableJson({bytes.constData(), size_t(bytes.size())}, 16), "isParsable");
    }

    void oldestUploadsMakeRoom() {
        const QTemporaryDir place;
        ReportDirectory directory(place.path(), 16 * ReportDirectory::BlockBytes);
        const auto upload = [&](const QString& key, qint64 ageMs) {
            QVERIFY(directory.beginUpload(key).isValid());
            const QString file = place.path() + "/incoming/" + key;
            QVERIFY(QFile::resize(file, ReportDirectory::BlockBytes));
            const utimbuf times{(Now - ageMs) / 1000, (Now - ageMs) / 1000};
            QCOMPARE(::utime(QFile::encodeName(file).constData(), &times), 0);
            QVERIFY(directory.keepUpload(key, "png", ReportDirectory::BlockBytes));
        };
        upload("young", Hour / 2);
        upload("old", 2 * Hour);
        upload("older", 3 * Hour);
        upload("oldest", 4 * Hour);
        upload("named", 5 * Hour);
        upload("forgotten", 25 * Hour);
        QCOMPARE(int(directory.save("r1", {}, {"named"}, {"image-1"})), int(ReportDirectory::Saved::Yes));
        QCOMPARE(int(directory.save("r1", {}, {}, {})), int(ReportDirectory::Saved::Before));
        QCOMPARE(int(directory.save("r2", {}, {"none"}, {"image-1"})), int(ReportDirectory::Saved::No));
        QVERIFY(directory.reserve(1, Now) && !directory.hasUpload("forgotten") &&
                directory.hasUpload("older"));
        std::vector<std::unique_ptr<ReportDirectory::Room>> rooms;
        while (directory.hasUpload("oldest")) {
            rooms.push_back(directory.reserve(ReportDirectory::BlockBytes, Now + qint64(rooms.size())));
            QVERIFY(rooms.back());
        }
        QVERIFY(!directory.hasUpload("older"));  // room for the next one, too
        QVERIFY(directory.hasUpload("old") && directory.hasUpload("young"));
        QVERIFY(!directory.reserve(3 * ReportDirectory::BlockBytes, Now + 60 * 1000));
        QVERIFY(!directory.hasUpload("old") && directory.hasUpload("young"));
        QVERIFY(QFile::exists(place.path() + "/reports/r1/image-1.png"));
        QCOMPARE(
            QDir(place.path() + "/reports").entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
            QStringList("r1"));
        rooms.clear();
        QVERIFY(directory.reserve(3 * ReportDirectory::BlockBytes, Now + 60 * 1000));
        QVERIFY_EXCEPTION_THROWN(ReportDirectory(place.path(), 1), ReportError);
    }

    void terminalIsSafe_data() {
        const Table<QString, QString> row("text", "shown");
        row("plain", "abc", "abc");
        row("escape", "a\x1b[2Jb", QString("a?[2Jb").left(6));
        row("lines", "a\r\nb\u2028", "a??b?");
        row("direction", QString::fromUtf8("a\u202Eb\u0085\u200F"), "a?b??");
        row("long", "abcdefgh", QString::fromUtf8("abcde…"));
        row("wide", QString::fromUtf8("一二三四"), QString::fromUtf8("一二…"));
        row("wide and full", QString::fromUtf8("一二三"), QString::fromUtf8("一二三"));
    }
    void terminalIsSafe() {
        QFETCH(QString, text);
        QTEST(terminalText(text, 6), "shown");
    }
};

QTEST_GUILESS_MAIN(StoreReportRulesTest)
#include "StoreReportRulesTest.moc"
