#include <QtTest>

#include "storeserver/Options.h"
#include "storeserver/catalogue/SearchText.h"
#include "storeserver/request/RequestHead.h"
#include "storeserver/request/StoreAddress.h"
#include "storeserver/request/StoreParameters.h"
#include "storeserver/server/Conversation.h"
#include "support/Table.h"

using namespace StoreServer;
using TestSupport::Table;

namespace {

const QByteArray Head = "GET /a HTTP/1.1\r\nHost: h\r\n";

StoreRequest requestWith(const QString& parameters) {
    StoreRequest request;
    for (const QString& parameter : parameters.split('&', Qt::SkipEmptyParts))
        request.parameters.emplace(parameter.section('=', 0, 0).toStdString(),
                                   parameter.section('=', 1).toStdString());
    return request;
}

QByteArray receiveAll(Conversation& conversation, const QByteArray& bytes, int pieceSize) {
    QByteArray answers;
    for (int first = 0; first < bytes.size(); first += pieceSize) {
        conversation.receive(bytes.mid(first, pieceSize).toStdString());
        while (!conversation.output().empty()) {
            answers += QByteArray::fromStdString(std::string(conversation.output()));
            conversation.sent(conversation.output().size());
        }
    }
    return answers;
}

}  // namespace

class StoreRequestTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void scansHeads_data() {
        using State = RequestHead::State;
        const Table<QByteArray, int> row("bytes", "state");
        row("whole", Head + "\r\n", int(State::Complete));
        row("nothing", "", int(State::Incomplete));
        row("half", Head, int(State::Incomplete));
        row("bare line feeds", "GET /a HTTP/1.1\nHost: h\n\r\n\r\n", int(State::Malformed));
        row("bare return", Head + "X: a\rb\r\n\r\n", int(State::Malformed));
        row("null", Head + QByteArray("X: a\0b\r\n\r\n", 10), int(State::Malformed));
        row("other protocol", "\x16\x03", int(State::Malformed));
        row("folded", Head + " more\r\n\r\n", int(State::Malformed));
        row("no colon", Head + "Other\r\n\r\n", int(State::Malformed));
        row("blank before colon", Head + "Content-Length : 5\r\n\r\n", int(State::Malformed));
        row("two hosts", Head + "host: other\r\n\r\n", int(State::Malformed));
        row("body", Head + "CONTENT-LENGTH: \t5 \r\n\r\n", int(State::Complete));
        row("signed length", Head + "Content-Length: +5\r\n\r\n", int(State::Malformed));
        row("two lengths", Head + "Content-Length: 5\r\nContent-Length: 5\r\n\r\n", int(State::Malformed));
        row("endless body", Head + "Content-Length: 99999999999999999999\r\n\r\n", int(State::BadBody));
        row("empty body", Head + "Content-Length: 0\r\n\r\n", int(State::Complete));
        row("chunks", Head + "Transfer-Encoding: chunked\r\n\r\n", int(State::BadBody));
        row("long line", "GET /" + QByteArray(9000, 'a') + " HTTP/1.1\r\nHost: h\r\n\r\n",
            int(State::LineTooLong));
        row("endless line", QByteArray(20000, 'a'), int(State::LineTooLong));
        row("endless headers", Head + QByteArray("A: b\r\n").repeated(4000), int(State::TooLong));
    }
    void scansHeads() {
        QFETCH(QByteArray, bytes);
        QFETCH(int, state);
        const RequestHead::Scan scan = RequestHead::scan(bytes.toStdString());
        QCOMPARE(int(scan.state), state);
        if (scan.state == RequestHead::State::Complete)
            QCOMPARE(int(scan.length), bytes.size());
        QCOMPARE(scan.bodyLength, bytes.contains("\t5") ? size_t(5) : size_t(0));
    }

    void keepsOnlyHeadersThatMatter() {
        const QByteArray rest = "x-vesk-language: zh\r\nConnection: close\r\n";
        const QByteArray head =
            Head + "Range: bytes=0-1\r\n" + rest + "Expect: 100-continue\r\nAccept-Encoding: br\r\n\r\n";
        QCOMPARE(QByteArray::fromStdString(RequestHead::reduced(head.toStdString())), Head + rest + "\r\n");
    }

    void answersWhateverTheirPieces_data() {
        const Table<int> row("pieceSize");
        for (const int size : {1, 7, 1000})
            row(qPrintable(QString::number(size)), size);
    }
    void answersWhateverTheirPieces() {
        QFETCH(int, pieceSize);
        QStringList paths;
        HttpExchange exchange([&paths](const StoreRequest& request) {
            paths += QString::fromStdString(request.path);
            StoreAnswer answer;
            answer.body = "body";
            answer.contentType = "text/plain";
            return answer;
        });
        Conversation conversation(exchange);
        const QByteArray answers = receiveAll(
            conversation,
            Head + "\r\nGET /b%20%2e HTTP/1.1\r\nHost: h\r\nConnection: close\r\n\r\n" + Head + "\r\n",
            pieceSize);
        QCOMPARE(paths, QStringList({"/a", "/b ."}));
        QCOMPARE(answers.count("HTTP/1.1 200 OK\r\n"), 2);
        QVERIFY(conversation.phase() == Conversation::Phase::Over);
    }

    void bodiesComeWithTheirRequests_data() { answersWhateverTheirPieces_data(); }
    void bodiesComeWithTheirRequests() {
        struct Body : RequestBody {
            void write(std::string_view bytes) override { text += bytes; }
            StoreAnswer answer(const StoreRequest& request) override {
                return {200,
                        "text/plain",
                        text + ' ' + request.client + ' ' + request.device.at("x-device-id"),
                        {}};
            }
            std::string text;
        };
        QFETCH(int, pieceSize);
        HttpExchange exchange([](const StoreRequest&) { return StoreAnswer(); },
                              [](const StoreRequest& head, size_t length) {
                                  return length < 9 && head.path == "/a" ? std::make_unique<Body>() : nullptr;
                              });
        Conversation conversation(exchange, "127.0.0.1");
        const QByteArray post =
            "POST /a HTTP/1.1\r\nHost: h\r\nX-Device-ID: d\r\nX-Forwarded-For: 192.0.2.1\r\n"
            "X-Forwarded-For: 192.0.2.2\r\nContent-Length: ";
        const QByteArray answers = receiveAll(
            conversation, post + "6\r\n\r\nGET /\n" + post + "2\r\n\r\nab" + post + "9\r\n\r\n", pieceSize);
        QVERIFY2(answers.contains("GET /\n 192.0.2.2 d") && answers.contains("ab 192.0.2.2 d"),
                 answers.constData());
        QVERIFY2(answers.contains("HTTP/1.1 413"), answers.constData());
        QVERIFY(conversation.phase() == Conversation::Phase::Over);
    }

    void refusesAndEnds_data() {
        const Table<QByteArray, QByteArray> row("bytes", "status");
        row("nonsense", "\x16\x03\x01\r\n\r\n", "400");
        row("no version", "GET /\r\n\r\n", "400");
        row("other version", "GET / HTTP/9.9\r\n\r\n", "400");
        row("unknown method", "BREW / HTTP/1.1\r\n\r\n", "400");
        row("body", Head + "Content-Length: 3\r\n\r\nabc", "413");
        row("long line", "GET /" + QByteArray(9000, 'a') + " HTTP/1.1\r\n\r\n", "414");
    }
    void refusesAndEnds() {
        QFETCH(QByteArray, bytes);
        QFETCH(QByteArray, status);
        HttpExchange exchange([](const StoreRequest&) { return StoreAnswer(); });
        Conversation conversation(exchange);
        const QByteArray answer = receiveAll(conversation, bytes, 100000);
        QVERIFY2(answer.startsWith("HTTP/1.1 " + status + ' '), answer.constData());
        QCOMPARE(answer.count("HTTP/1.1"), 1);
        QVERIFY(conversation.phase() == Conversation::Phase::Over);
    }

    void readsLists_data() {
        const Table<QString, QString> row("parameters", "result");
        row("none", "", "all updated desc 1 20");
        row("all", "category=3&pageIndex=2&pageSize=50&field=score&sort=asc", "3 score asc 2 50");
        row("client's", "category=0&field=download_count&sort=desc", "0 installations desc 1 20");
        row("large as clients write it", "pageIndex=1e+06", "all updated desc 1000000 20");
        row("out of bounds", "pageIndex=-4&pageSize=4000", "all updated desc 1 100");
        row("no size", "pageSize=0", "all updated desc 1 1");
        row("half a page", "pageIndex=1.5", "pageIndex is not a whole number");
        row("page of letters", "pageIndex=1;drop", "pageIndex is not a whole number");
        row("infinite", "pageSize=inf", "pageSize is not a whole number");
        row("category of letters", "category=a", "category is not a whole number");
        row("unknown field", "field=id", "field is not one of update_time, download_count, score");
        row("unknown order", "sort=up", "sort is not one of asc, desc");
    }
    void readsLists() {
        QFETCH(QString, parameters);
        QFETCH(QString, result);
        const Parsed<ListQuery> parsed = listQuery(requestWith(parameters));
        const ListQuery& query = parsed.value;
        const QString category = query.category ? QString::number(*query.category) : "all";
        const QString field = QStringList({"updated", "installations", "score"})[int(query.field)];
        const QString found = QString("%1 %2 %3 %4 %5")
                                  .arg(category, field, query.isAscending ? "asc" : "desc")
                                  .arg(query.page.pageIndex)
                                  .arg(query.page.pageSize);
        QCOMPARE(parsed.error.empty() ? found : QString::fromStdString(parsed.error), result);
    }

    void limitsKeywords() {
        const QString hundred = QString::fromUtf8("字").repeated(100);
        QCOMPARE(keyword(requestWith("keyword=" + hundred)).value, hundred.toStdString());
        QVERIFY(!keyword(requestWith("keyword=" + hundred + "x")).error.empty());
    }

    void makesSearches_data() {
        const Table<QString, QString, QString> row("text", "words", "triples");
        row("nothing", " \t", "", "");
        row("word", "Notes", "", "\"notes\"");
        row("short", "7Z", "\"7z\"*", "");
        row("wide", "ＰＤＦ", "", "\"pdf\"");
        row("Chinese", "微信", "\"微 信\"", "");
        row("mixed", "微信PC版", "\"微 信\" AND \"pc\"* AND \"版\"", "");
        row("two words", "note 编辑", "\"编 辑\"", "\"note\"");
        row("quotes", "a\"b OR c*", "\"or\"* AND \"c*\"*", "\"a\"\"b\"");
        row("signs", "+ - ( )", "", "");
        row("many", "a b c d e f g h i j",
            "\"a\"* AND \"b\"* AND \"c\"* AND \"d\"* AND \"e\"* AND \"f\"* AND \"g\"* AND \"h\"*", "");
    }
    void makesSearches() {
        QFETCH(QString, text);
        const SearchText::Query query = SearchText::query(SearchText::folded(text));
        QTEST(query.words, "words");
        QTEST(query.triples, "triples");
    }

    void takesItsAddress_data() {
        const Table<QString, QString, QString, QString> row("publicUrl", "host", "scheme", "address");
        row("host", "", "store.example:81", "", "http://store.example:81");
        row("secure", "", "store.example", "https", "https://store.example");
        row("strange scheme", "", "store.example", "javascript", "http://store.example");
        row("number", "", "[::1]:80", "", "http://[::1]:80");
        row("public", "https://a.example/b", "evil.example", "http", "https://a.example/b");
        for (const char* host :
             {"", "a b", "a/b", "a\"b", "a:b", "a:", ":80", "[", "[]", "[::1", "[::1]x", "a@b", "a:123456"})
            row(qPrintable("bad host " + QString(host)), "", host, "", "");
    }
    void takesItsAddress() {
        QFETCH(QString, publicUrl);
        QFETCH(QString, host);
        QFETCH(QString, scheme);
        StoreAddress address;
        QCOMPARE(address.set(publicUrl.toStdString()), !publicUrl.isEmpty());
        StoreRequest request;
        request.host = host.toStdString();
        request.scheme = scheme.toStdString();
        QTEST(QString::fromStdString(address.of(request)), "address");
    }

    void pathMayHaveItsBeginning() {
        StoreAddress address;
        QVERIFY(address.set("https://a.example/b/c"));
        QCOMPARE(address.pathBelow("/b/c/icons/x"), std::string("/icons/x"));
        QCOMPARE(address.pathBelow("/icons/x"), std::string("/icons/x"));
        QCOMPARE(address.pathBelow("//b/c//icons/x"), std::string("/icons/x"));
        QCOMPARE(address.pathBelow("/b/cd"), std::string("/b/cd"));
        for (const char* bad : {"", "a.example", "ftp://a.example", "https://", "https://a.example/",
                                "https://a/%41", "https://a/\"", "https://a?b"})
            QVERIFY2(!address.set(bad), bad);
    }

    void readsOptions_data() {
        const Table<QStringList, QString> row("arguments", "result");
        row("none", {}, "/starter 127.0.0.1 8630");
        row("all", {"--data", "/d", "--listen", "[::1]:80"}, "/d ::1 80");
        row("no port", {"--listen", "127.0.0.1"}, "--listen must be");
        row("no address", {"--listen", ":80"}, "--listen must be");
        row("large port", {"--listen", "::1:70000"}, "--listen must be");
        row("no threads", {"--threads", "0"}, "--threads must be");
        row("address", {"--public-url", "x"}, "--public-url must be");
        row("idle", {"--idle-seconds", "-1"}, "--idle-seconds must be");
        row("idle for ever", {"--idle-seconds", "2147484"}, "--idle-seconds must be");
        row("session elsewhere", {"--session", "--listen", "0.0.0.0:1"}, "--listen and --public-url cannot");
        row("session as another", {"--session", "--public-url", "http://a"}, "--listen and --public-url");
        row("list of none", {"--list-reports"}, "--list-reports needs a directory");
        row("list", {"--list-reports", "/r"}, "/starter");
        row("room of none", {"--reports-room", "5"}, "--reports-room needs a directory");
        row("no room", {"--reports", "/r", "--reports-room", "0"}, "--reports-room must be");
        row("session with reports", {"--session", "--reports", "/r"}, "--reports cannot be used");
        row("unknown", {"--dta", "x"}, "Unknown option 'dta'.");
        row("stray", {"x"}, "Unexpected argument: x");
    }
    void readsOptions() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, result);
        const Options options = parseOptions(QStringList("program") + arguments, "/starter");
        const QString found = QString("%1 %2 %3").arg(options.data, options.host.c_str()).arg(options.port);
        const QString shown = options.error.isEmpty() ? found : options.error;
        QVERIFY2(shown.startsWith(result), qPrintable(shown));
    }
};

QTEST_GUILESS_MAIN(StoreRequestTest)
#include "StoreRequestTest.moc"
