#include "storeserver/data/StoreDirectory.h"

#include <QDir>
#include <QFile>

#include "support/StoreFiles.h"
#include "support/Table.h"

using namespace StoreServer;
using TestSupport::StoreFiles;
using TestSupport::Table;

namespace {

const StoreFiles::App Notes{7, "Notes", "记事本", 1, 12, 5, "2024-05-31"};

QString textOf(const Faults& faults) {
    QStringList lines;
    for (const Fault& fault : faults)
        lines += fault.toString();
    return lines.join('\n');
}

}  // namespace

class StoreDataTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsEveryFact() {
        Faults faults;
        const AppRecord app = readApp(StoreFiles::storeText(Notes), "notes", "f", faults);
        QCOMPARE(textOf(faults), QString());
        QCOMPARE(app.appInfoId, QString("notes"));
        QCOMPARE(app.appId, 7LL);
        QCOMPARE(app.names.chinese(), QString("记事本"));
        QCOMPARE(app.category, 1LL);
        QCOMPARE(app.version, QString("1.2"));
        QCOMPARE(app.size, 123456789LL);
        QCOMPARE(app.description.english(), QString("One\ntwo"));
        QCOMPARE(app.score, 5);
        QCOMPARE(app.recommend, 1);
        QCOMPARE(app.contributorEmail, QString("ann@store.example"));
        QCOMPARE(app.download, QString("https://app.example/setup.exe"));
        QCOMPARE(app.updated, QDate(2024, 5, 31));
        QCOMPARE(app.installations, 12LL);
    }

    void oneLanguageStandsForTheOther() {
        Faults faults;
        const QByteArray text =
            "{appId: 1, names: {zh: 记事本}, category: 1, brief: {en: Short}, updated: 2024-01-01}";
        const AppRecord app = readApp(text, "notes", "f", faults);
        QCOMPARE(textOf(faults), QString());
        QCOMPARE(app.names.english(), QString("记事本"));
        QCOMPARE(app.brief.chinese(), QString("Short"));
        QVERIFY(app.version.isEmpty() && app.site.isEmpty() && app.size == 0);
    }

    void refusesFacts_data() {
        const Table<QString, QString, QString> row("line", "instead", "fault");
        row("unknown key", "recommend: 1", "recomend: 1", "f: Line 9, column 1: Unknown key \"recomend\".");
        row("twice", "recommend: 1", "score: 1", "f: Line 9, column 1: \"score\" is given twice.");
        row("no id", "appId: 7\n", "", "f: Line 1, column 1: \"appId\" is missing.");
        row("id 0", "appId: 7", "appId: 0",
            "f: Line 1, column 8: \"appId\" must be a whole number from 1 to 9007199254740992.");
        row("id too large", "appId: 7", "appId: 99999999999999999999", "from 1 to");
        row("half a star", "score: 5", "score: 4.5",
            "Line 8, column 8: \"score\" must be a whole number from 0 to 5.");
        row("six stars", "score: 5", "score: 6", "from 0 to 5.");
        row("text as map", "version: \"1.2\"", "version: [1, 2]", "\"version\" must be a text or a number.");
        row("map as text", "contributor: {name: Ann, email: ann@store.example}", "contributor: Ann",
            "Line 10, column 14: This must be a map of keys and values.");
        row("unknown language", "zh: \"记事本\"", "cn: \"记事本\"", "Unknown key \"cn\".");
        row("no name", "{en: \"Notes\", zh: \"记事本\"}", "{}", "\"names\" has a text in no language.");
        row("control character", "\"1.2\"", "\"1\\a\"", "\"version\" has a control character.");
        row("long", "\"1.2\"", QString(101, '1'), "\"version\" is longer than 100 characters.");
        row("script as site", "https://app.example\n", "javascript:alert(1)\n",
            "\"site\" must be a web address");
        row("file as download", "https://app.example/setup.exe", "file:///etc/passwd",
            "\"download\" must be");
        row("no such day", "2024-05-31", "2024-02-31", "\"updated\" must be a day");
        row("other form of day", "2024-05-31", "31.5.2024", "\"updated\" must be a day");
        row("anchor", "version: \"1.2\"", "version: &a b", "Anchors");
        row("no YAML", "score: 5", "score: [", "Line ");
    }
    void refusesFacts() {
        QFETCH(QString, line);
        QFETCH(QString, instead);
        QFETCH(QString, fault);
        const QString text = QString::fromUtf8(StoreFiles::storeText(Notes));
        QVERIFY(text.contains(line));
        Faults faults;
        readApp(QString(text).replace(line, instead).toUtf8(), "notes", "f", faults);
        QVERIFY2(textOf(faults).contains(fault), qPrintable(textOf(faults)));
    }

    void refusesCategories_data() {
        const Table<QByteArray, QString> row("text", "fault");
        row("empty", "", "c: The text is empty.");
        row("none", "[]", "list of 1 to");
        row("a map", "{id: 1}", "list of 1 to");
        row("twice", "[{id: 1, names: {en: A}}, {id: 1, names: {en: B}}]",
            "c: Line 1, column 32: Another category has the id 1.");
        row("no id", "[{names: {en: A}}]", "\"id\" is missing.");
        row("not UTF-8", "[{id: 1, names: {en: \"\xff\"}}]", "not UTF-8");
        row("large", "# " + QByteArray(300000, 'x'), "The file is larger than");
    }
    void refusesCategories() {
        QFETCH(QByteArray, text);
        QFETCH(QString, fault);
        Faults faults;
        readCategories(text, "c", faults);
        QVERIFY2(textOf(faults).contains(fault), qPrintable(textOf(faults)));
    }

    void readsKindsOfProblems() {
        Faults faults;
        const auto types =
            readIssueTypes("[{id: crash, names: {en: A}}, {id: other, names: {zh: B}}]", "i", faults);
        QVERIFY2(types.size() == 2 && faults.isEmpty(), qPrintable(textOf(faults)));
        readIssueTypes("[{id: A b, names: {en: A}}]", "i", faults);
        readIssueTypes("[{id: a, names: {}}, {id: a, names: {en: B}}]", "i", faults);
        for (const char* fault : {"An id has 1 to 32", "a text in no language", "problem has the id a."})
            QVERIFY2(textOf(faults).contains(fault), fault);
    }

    void checksIcons_data() {
        const QByteArray png = QByteArray::fromHex("89504e470d0a1a0a0000000d49484452");
        const Table<bool, QByteArray, QString> row("isPng", "data", "fault");
        row("good png", true, png + QByteArray::fromHex("0000010000000100"), "");
        row("large png", true, png + QByteArray::fromHex("0000020100000100"), "larger than 512 x 512");
        row("empty png", true, "", "not a PNG");
        row("short png", true, png, "not a PNG");
        row("good svg", false, StoreFiles::iconText(), "");
        row("page as svg", false, "<html/>", "not an SVG");
        row("broken svg", false, "<svg><g></svg>", "not an SVG");
        row("script", false, "<svg><script>1</script></svg>", "\"script\"");
        row("handler", false, "<svg onload='x()'/>", "\"onload\" that leads out of it");
        row("other file", false, "<svg xmlns:x='u'><image x:href='file:///etc/passwd'/></svg>",
            "\"href\" that leads");
        row("own part", false, "<svg xmlns:x='u'><use x:href='#a'/></svg>", "");
        for (const char* style : {"url(http://a/b)", "URL ( 'file:///a#b' )", "u\\72l(a)"})
            row(style, false, "<svg fill=\"" + QByteArray(style) + "\"/>", "\"fill\" that leads out of it");
        row("own gradient", false, "<svg fill='url(#a)' style='fill: url( \"#b\")'/>", "");
        row("style sheet", false, "<svg><style>@im<!-- -->port 'a.css';</style></svg>", "\"style\" that");
        row("outer style sheet", false, "<?xml-stylesheet href='a.css'?><svg/>", "processing instruction");
        row("entity", false, "<!DOCTYPE svg [<!ENTITY a 'b'>]><svg/>", "document type");
        row("huge", false, "<svg/>" + QByteArray(int(MaximumIconBytes), ' '), "larger than");
    }
    void checksIcons() {
        QFETCH(bool, isPng);
        QFETCH(QByteArray, data);
        QFETCH(QString, fault);
        const QString found = iconFault(isPng ? IconFile::Kind::Png : IconFile::Kind::Svg, data);
        QVERIFY2(fault.isEmpty() ? found.isEmpty() : found.contains(fault), qPrintable(found));
    }

    void readsADirectory() {
        StoreFiles files;
        files.add("notes", Notes);
        files.write("apps/.hidden/x", "");
        Faults faults;
        const StoreDirectory directory(files.path());
        QCOMPARE(directory.appInfoIds(faults).value(), QStringList("notes"));
        const std::optional<AppEntry> app = directory.app("notes", faults);
        QVERIFY2(app, qPrintable(textOf(faults)));
        QCOMPARE(app->manifest, StoreFiles::manifestText("Notes"));
        QVERIFY(QRegularExpression("\\Anotes-[0-9a-f]{16}\\.svg\\z")
                    .match(app->icon.servedName("notes"))
                    .hasMatch());
        QCOMPARE(directory.categories(faults).value().size(), 2);
        QCOMPARE(textOf(faults), QString());
    }

    void refusesFiles() {
        StoreFiles files;
        files.add("notes", Notes);
        files.write("apps/notes/manifest.yml", StoreFiles::manifestText("Notes") + "Trick: 1\n");
        files.write("apps/notes/icon.png", "");
        files.write("apps/Big/x", "");
        files.write("apps/1042/x", "");
        QDir(files.path("apps/empty")).mkpath(".");
        QFile::link(files.path("nowhere"), files.path("apps/lost"));
        QFile::link("turning", files.path("apps/turning"));
        Faults faults;
        const StoreDirectory directory(files.path());
        QCOMPARE(directory.appInfoIds(faults).value(), QStringList({"empty", "lost", "notes", "turning"}));
        QVERIFY(!directory.app("notes", faults));
        QVERIFY(!directory.app("empty", faults));
        const QString text = textOf(faults);
        for (const char* fault :
             {"apps/Big: The name", "apps/1042: The name", "apps/lost: The link leads to no directory.",
              "apps/turning: The link", "apps/notes/manifest.yml: Line 3, column 1: ",
              "apps/notes/icon.svg: There is an icon.png as well",
              "apps/empty/store.yml: The file is missing", "apps/empty/manifest.yml: The file"})
            QVERIFY2(text.contains(fault), qPrintable(text));
    }

    void signatureFollowsEachFile() {
        StoreFiles files;
        files.add("notes", Notes);
        const StoreDirectory directory(files.path());
        QByteArray last = directory.signature("notes");
        QCOMPARE(directory.signature("notes"), last);
        for (const char* file : {"store.yml", "manifest.yml", "icon.svg", "icon.png"}) {
            files.write(QString("apps/notes/") + file, "x");
            QVERIFY2(directory.signature("notes") != last, file);
            last = directory.signature("notes");
        }
    }
};

QTEST_GUILESS_MAIN(StoreDataTest)
#include "StoreDataTest.moc"
