#include "store/install/ManifestFacts.h"

#include "store/install/ManifestCommandList.h"
#include "store/install/SetupAppInfo.h"
#include "store/records/VeskClientAppInfo.h"
#include "support/Table.h"

using TestSupport::Table;

class ManifestFactsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void reads_data() {
        const Table<QByteArray, QString, QString, QString> row("yaml", "package", "dependencies", "url");
        const QString standard = "lumora-wine8-stable";
        row("all", "Name: A\nDebInfo: {wine_cmd: w, wine_deps: 'a, b'}\ndownloadUrl: http://x/", "w", "a, b",
            "http://x/");
        row("nothing said", "Name: A\nDebInfo: {}", standard, "", "");
        row("empty", "Name:\nDebInfo:", standard, "", "");
        row("no scalars", "Name: A\nDebInfo: {wine_cmd: [w], wine_deps: {a: b}}\ndownloadUrl: [u]", standard,
            "", "");
        row("one of the two", "Name: A\nDebInfo: {wine_deps: d}", standard, "d", "");
        row("an empty text", "Name: A\nDebInfo: {wine_cmd: ''}", standard, "", "");
        row("no name of a package", "Name: A\nDebInfo: {wine_cmd: '../x?y'}", standard, "", "");
        row("a long name", "Name: A\nDebInfo: {wine_cmd: " + QByteArray(256, 'w') + "}", standard, "", "");
        row("brackets in texts", "Name: A\nDebInfo: {}\nZ: ['" + QByteArray(30, '[') + "']", standard, "",
            "");
        row("more than we read", "Name: A\nDebInfo: {x: 1}\nBottle: {Windows: win10, Commands: 7}\nZ: [1]",
            standard, "", "");
    }
    void reads() {
        QFETCH(QByteArray, yaml);
        QString error;
        const auto facts = ManifestFacts::read(yaml, &error);
        QVERIFY2(facts, qPrintable(error));
        QTEST(facts->winePackage, "package");
        QTEST(facts->wineDependencies, "dependencies");
        QTEST(facts->downloadUrl, "url");
    }

    void refuses_data() {
        const Table<QByteArray> row("yaml");
        row("nothing", "");
        row("a JSON error", R"({"code":500,"msg":"no"})");
        row("a web page", "<html><body>Name: x</body></html>");
        row("a list", "- Name: A");
        row("a text", "Name");
        row("without DebInfo", "Name: A");
        row("DebInfo is a text", "Name: A\nDebInfo: wine");
        row("no YAML", "Name: A\nDebInfo: {");
        row("alias", "Name: &n A\nDebInfo: {wine_cmd: *n}");
        row("a bomb", "Name: A\nDebInfo: {}\na: &a [x,x]\nb: &b [*a,*a]\nc: [*b,*b]");
        row("deep", "Name: A\nDebInfo: {}\nX: " + QByteArray(100000, '['));
        row("too many", "Name: A\nDebInfo: {}\nX: [" + QByteArray("1,").repeated(60000) + "]");
        row("large", "Name: A\nDebInfo: {}\nX: " + QByteArray(ManifestFacts::MaximumBytes, 'x'));
        row("binary", QByteArray::fromHex("00ff00fe10"));
    }
    void refuses() {
        QFETCH(QByteArray, yaml);
        QString error;
        QVERIFY(!ManifestFacts::read(yaml, &error));
        QVERIFY(!error.isEmpty());
    }

    void setup_data() {
        const Table<QByteArray, int, qint64> row("setup", "digits", "bytes");
        const QByteArray sum = QByteArray("aB").repeated(32);
        row("both", "{SHA256: " + sum + ", Size: 12}", 64, qint64(12));
        row("no digits", "{SHA256: " + QByteArray(64, 'g') + ", Size: much}", 0, qint64(0));
        row("short", "{SHA256: abc, Size: -5}", 0, qint64(0));
        row("no map", "[1]", 0, qint64(0));
    }
    void setup() {
        QFETCH(QByteArray, setup);
        QString error;
        const auto facts = ManifestFacts::read("Name: A\nDebInfo: {}\nSetup: " + setup, &error);
        QTEST(facts->setupSha256.size(), "digits");
        QCOMPARE(facts->setupSha256, facts->setupSha256.toLower());
        QTEST(facts->setupBytes, "bytes");
    }

    void commands() {
        QString error;
        const auto facts = ManifestFacts::read(
            "Name: A\nDebInfo: {}\nBottle: {Commands: [{Program: regedit, Arguments: [/s, 'c:\\a b.reg', ''],"
            " Description: \"Sets\\n\\u202Eit\"}, {Program: \"a\\nb\"}, 7]}",
            &error);
        QStringList texts;
        for (const ManifestCommand& command : facts->commands)
            texts += ManifestCommandList::text(command);
        const QString hidden(QChar::ReplacementCharacter);
        QCOMPARE(texts, QStringList({"Sets " + hidden + "it\n  regedit /s \"c:\\a b.reg\" \"\"",
                                     "a" + hidden + "b", "\"\""}));
    }

    void dialogRecord_data() {
        const Table<QString, QString, QString> row("json", "url", "size");
        row("of the record", R"({"downloadUrl":"r.example","packageSize":2097152})", "r.example", "2M");
        row("of the manifest", R"({"downloadUrl":"","packageSize":0})", "http://m/", "1M");
    }
    void dialogRecord() {
        QFETCH(QString, json);
        ManifestFacts facts;
        facts.downloadUrl = "http://m/";
        facts.setupBytes = 1 << 20;
        const SetupAppInfo info = SetupAppInfo::of(OpenAPI::VeskClientAppInfo(json), facts);
        QTEST(info.downloadUrl, "url");
        QTEST(info.size, "size");
    }
};

QTEST_GUILESS_MAIN(ManifestFactsTest)
#include "ManifestFactsTest.moc"
