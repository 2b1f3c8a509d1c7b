#include <utime.h>
#include <QCryptographicHash>
#include <QJsonArray>
#include <QtTest>

#include "storeserver/reports/JsonScan.h"
#include "storeserver/reports/OwnKey.h"
#include "storeserver/reports/PlainText.h"
#include "storeserver/reports/ReportDirectory.h"
#include "storeserver/reports/ReportGate.h"
#include "storeserver/reports/ReportSignature.h"
#include "storeserver/reports/ScoreBook.h"
#include "storeserver/request/ClientAddress.h"
#include "support/Table.h"
#include "support/TestHome.h"

using namespace StoreServer;
using TestSupport::Table;

namespace {

constexpr qint64 Now = 1700000000000;
constexpr qint64 Hour = 60 * 60 * 1000;

bool write(const QString& path, const QByteArray& content) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

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
        QVERIFY(ReportSignature::isGood(body, "s3cret"));
        QVERIFY(!ReportSignature::isGood(body, "other") && !ReportSignature::isGood(body, {}));
        body["score"] = 4;
        QVERIFY(!ReportSignature::isGood(body, "s3cret"));
        const QByteArray hex = QByteArray("sixteen letters.").toHex();
        QCOMPARE(ReportSignature::secretOf(hex), QString("sixteen letters."));
        for (const QByteArray& bad : {hex + "6", hex.left(30), hex + "00"})
            QVERIFY2(ReportSignature::secretOf(bad).isEmpty(), bad.constData());
    }

    void nouncesAreRememberedWhileTheyMatter() {
        using Verdict = NounceLedger::Verdict;
        const qint64 window = NounceLedger::WindowMs;
        NounceLedger ledger;
        ledger.enter("ahead", Now + 1000 * Hour);  // by a clock that is set right then
        QVERIFY(ledger.verdict("a", Now + window, Now) == Verdict::Fresh);
        ledger.enter("a", Now);
        QVERIFY(ledger.verdict("a", Now + window, Now + 2 * window) == Verdict::Used);
        QVERIFY(ledger.verdict("a", Now + 3 * window, Now + 2 * window + 1) == Verdict::Fresh);
        QVERIFY(ledger.verdict("ahead", Now + 3 * window, Now + 2 * window + 1) == Verdict::Fresh);
        for (const qint64 time : {Now - window - 1, Now + window + 1, std::numeric_limits<qint64>::min()})
            QVERIFY(ledger.verdict("b", time, Now) == Verdict::OutOfTime);
        for (int count = 0; count < NounceLedger::MostNounces; ++count)
            ledger.enter(QString::number(count), Now + 2 * window + 1);
        QVERIFY(ledger.verdict("c", Now + 2 * window, Now + 2 * window + 1) == Verdict::Full);
    }

    void gateTakesWellFormedBodiesOnce_data() {
        const Table<QString, QString, int> row("time", "nounce", "status");
        row("good", QString::number(Now), "abcdEFG9", 200);
        row("long nounce", QString::number(Now), "abcdEFGH1", 400);
        row("odd nounce", QString::number(Now), "abcdEF\n\n", 400);
        row("odd time", " " + QString::number(Now), "abcdEFGH", 400);
        row("late", QString::number(Now - Hour), "abcdEFGH", 401);
    }
    void gateTakesWellFormedBodiesOnce() {
        QFETCH(QString, time);
        QFETCH(QString, nounce);
        QFETCH(int, status);
        QJsonObject body{{"time", time}, {"nounce", nounce}};
        const QByteArray text = (ReportSignature::signedText(body) + "s3cret").toUtf8();
        body["sign"] =
            QString::fromLatin1(QCryptographicHash::hash(text, QCryptographicHash::Sha256).toHex());
        ReportGate gate("s3cret", 1 << 30);
        QCOMPARE(gate.admitBody(body, "device", Now).status, status);
        // However often it is replayed, the device's tokens are left for others.
        for (int count = 0; count < 2 * ReportGate::OfDevice.burst; ++count)
            QCOMPARE(gate.admitBody(body, "device", Now).status, status == 200 ? 401 : status);
    }

    void votesCountOnceForADevice() {
        const QString longName(60, 'x');
        QCOMPARE(voteKey(longName), voteKey(longName.left(50)));
        VotesByName votes{{"en", {{1, 7, 1, 10}, {2, 8, 5, 10}}}, {"zh", {{1, 7, 3, 20}}}};
        QCOMPARE(tallyOf("en", "zh", votes).rating(), 4);
        for (quint64 device = 10; device < 100; ++device)
            votes["en"].append({device, 9, 1, 5});
        QCOMPARE(tallyOf("en", "zh", votes).count, qint64(2 + MostOfNetwork));
    }

    void damagedScoresAreMovedAside() {
        const QTemporaryDir place;
        const QString file = place.filePath("scores.db");
        QVERIFY(write(file, QByteArray(5000, 'x')));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("scores.db is damaged"));
        ScoreBook book(file);
        book.enter("A", {1, 2, 4, Now});
        QCOMPARE(QDir(place.path()).entryList({"*.damaged-*"}).size(), 1);
        // While another program writes, scores wait.
        SqlDatabase other(file.toStdString(), SQLITE_OPEN_READWRITE);
        other.run("BEGIN IMMEDIATE");
        book.enter("a", {2, 2, 2, Now - ScoreBook::LifeMs - 1});
        QCOMPARE(ScoreBook::read(file)["a"].size(), 1);
        other.run("COMMIT");
        book.flush();
        QCOMPARE(ScoreBook::read(file)["a"].size(), 2);
        book.forgetOld(Now);
        QCOMPARE(ScoreBook::read(file), VotesByName({{"a", {{1, 2, 4, Now}}}}));
    }

    void ownKeyIsNeverReplaced() {
        const QTemporaryDir place;
        const QString file = place.filePath("own-key");
        const QByteArray key = ownKey(file);
        QVERIFY(write(file, key + '\n'));
        QCOMPARE(ownKey(file), key);
        QVERIFY(write(file, "half"));
        QVERIFY_EXCEPTION_THROWN(ownKey(file), ReportError);
        QCOMPARE(TestSupport::readFile(file), QByteArray("half"));
    }

    void tokensComeBackWithTime() {
        RateLimiter limiter({2, 1000, 3});
        QVERIFY(limiter.take("a", Now) && limiter.take("a", Now) && !limiter.take("a", Now + 999));
        QVERIFY(limiter.take("a", Now + 1998) && !limiter.take("a", Now - Hour));  // a clock that was set
        for (const char* key : {"b", "c", "d"})
            QVERIFY(limiter.take(key, Now));
        QVERIFY(limiter.take("a", Now, 2));  // forgotten for the others
        limiter.give("a", 1);
        QVERIFY(limiter.take("a", Now) && !limiter.take("a", Now));
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
        const qint64 block = ReportRoom::BlockBytes;
        auto directory = std::make_unique<ReportDirectory>(place.path(), 20 * block, Now);
        const auto upload = [&](const QString& key, qint64 ageMs) {
            const auto part = directory->room().reserve(block, "a", Now - ageMs);
            QVERIFY(part && directory->beginUpload(key).file.isValid() && part->use(block));
            const QString file = place.path() + "/incoming/" + key;
            QVERIFY(QFile::resize(file, block));
            const utimbuf times{(Now - ageMs) / 1000, (Now - ageMs) / 1000};
            QCOMPARE(::utime(QFile::encodeName(file).constData(), &times), 0);
            QCOMPARE(directory->keepUpload(key, "png", block, *part), 0);
            QCOMPARE(directory->beginUpload(key).error, EEXIST);
        };
        upload("young", Hour / 2);
        upload("old", 2 * Hour);
        upload("older", 3 * Hour);
        upload("oldest", 4 * Hour);
        upload("named", 5 * Hour);
        upload("forgotten", 25 * Hour);
        // A file in many reports takes its room once; and reports/ may be deleted at any time.
        QVERIFY(QDir(place.path() + "/reports").removeRecursively());
        for (const char* code : {"c1", "c2"})
            QCOMPARE(directory->save({code, {}, {"named"}, {"image-1"}}, "a", Now), 0);
        QCOMPARE(directory->save({"c3", {}, {"none"}, {"image-1"}}, "a", Now), ENOENT);
        const QStringList reports =
            QDir(place.path() + "/reports").entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        QCOMPARE(reports.size(), 2);
        QVERIFY(QFile::exists(place.path() + "/reports/" + reports[1] + "/image-1.png"));
        QVERIFY(directory->hasReport("c1", Now + Hour) && !directory->hasReport("c1", Now + 25 * Hour));
        directory.reset();
        // own-key, lock, three directories, five files, two directories of reports with a record each.
        directory = std::make_unique<ReportDirectory>(place.path(), 20 * block, Now);
        QVERIFY(directory->hasReport("c2", Now) && !directory->hasUpload("forgotten") &&
                !directory->hasUpload("named"));
        QCOMPARE(directory->room().percent(), 100 * 13 / 20);
        {
            const auto announced = directory->room().reserve(9 * block, "a", Now);
            QVERIFY(announced && directory->hasUpload("oldest"));
            QVERIFY(!directory->room().reserve(2 * block, "a", Now));
            QVERIFY(announced->use(8 * block) && !directory->hasUpload("oldest"));
            QVERIFY(directory->hasUpload("older") && directory->hasUpload("young"));
        }
        QVERIFY(directory->room().isCountWanted());
        QVERIFY(QDir(place.path() + "/reports").removeRecursively());
        directory->tidy(Now);
        QVERIFY(directory->room().reserve(11 * block, "a", Now));
        QVERIFY_EXCEPTION_THROWN(ReportDirectory(place.path(), 1, Now), ReportError);
    }

    void roomIsSharedAndCounted() {
        const qint64 block = ReportRoom::BlockBytes;
        ReportRoom room(8 * ReportRoom::OwnersBytes, {});
        const auto part = room.reserve(ReportRoom::OwnersBytes, "a", Now);
        QVERIFY(part && !room.reserve(1, "a", Now) && room.reserve(1, "b", Now));
        ReportRoom counted(100 * block, {});
        counted.beginCount();
        {
            // Kept while the directory is counted, which may not have seen it.
            const auto ended = counted.reserve(10 * block, "a", Now);
            QVERIFY(ended->use(10 * block));
            QCOMPARE(counted.percent(), 10);
            ended->keep(9 * block);
        }
        const auto written = counted.reserve(10 * block, "a", Now);
        QVERIFY(written->use(3 * block));
        counted.endCount(20 * block);
        QCOMPARE(counted.percent(), 32);
        QVERIFY(counted.reserve(61 * block, "b", Now) && !counted.reserve(62 * block, "b", Now));
    }

    void terminalIsSafe_data() {
        const Table<QString, QString> row("text", "shown");
        row("plain", "abc", "abc");
        row("escape", "a\x1b[2Jb", QString("a?[2Jb").left(6));
        row("lines", "a\r\nb\u2028", "a??b?");
        row("direction", QString::fromUtf8("a\u202Eb\u0085\u200F"), "a?b??");
        row("long", "abcdefgh", QString::fromUtf8("abcde…"));
        row("wide", QString::fromUtf8("一二三四"), QString::fromUtf8("一二…"));
        row("marks", "a" + QString(40, QChar(0x301)), "a" + QString(17, QChar(0x301)) + QChar(0x2026));
        row("wide and full", QString::fromUtf8("一二三"), QString::fromUtf8("一二三"));
    }
    void terminalIsSafe() {
        QFETCH(QString, text);
        QTEST(terminalText(text, 6), "shown");
        QCOMPARE(plainJson(QString::fromUtf8("[\"一\u0301\u202E\x7F\"]").toUtf8()),
                 QString::fromUtf8("[\"一\u0301\\u202e\\u007f\"]").toUtf8());
    }
};

QTEST_GUILESS_MAIN(StoreReportRulesTest)
#include "StoreReportRulesTest.moc"
