#include <sys/stat.h>

#include <QCoreApplication>
#include <QDomDocument>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTemporaryDir>

#include "launch/winelog/LogParseRule.h"
#include "shell/configuration/hints/HintHtml.h"
#include "shell/configuration/hints/HintLink.h"
#include "shell/configuration/hints/HintRules.h"
#include "shell/configuration/page/LiveLog.h"
#include "shell/configuration/page/LogFile.h"
#include "shell/configuration/rules/DebugLog.h"
#include "support/Table.h"

using TestSupport::Table;

Q_DECLARE_METATYPE(HintFacts)

namespace {

using Change = void (*)(HintFacts*);

/// Of a program that came up without a complaint, in an ordinary Wine while the staging one could be had.
HintFacts facts(Change change) {
    HintFacts result;
    result.findings = LogNoFinding;
    result.runner = "lumora-wine10-stable";
    result.knownRunners = QStringList{"lumora-wine10-stable", "lumora-wine-staging"};
    result.hasLaunchResult = true;
    change(&result);
    return result;
}

QString described(const QVector<Hint>& hints) {
    static const char* const names[] = {"net",   "fonts", "components", "game",   "console",
                                        "steam", "wine",  "translator", "windows"};
    QStringList texts;
    for (const Hint& hint : hints)
        texts << QStringList(QStringList{names[int(hint.kind)]} + hint.names).join(' ');
    return texts.join(", ");
}

/// The targets of the page's links, in order.
QStringList targets(const QString& page) {
    QDomDocument document;
    document.setContent(page);
    QStringList found;
    const QDomNodeList links = document.elementsByTagName("a");
    for (int i = 0; i < links.size(); ++i)
        found << links.at(i).toElement().attribute("href");
    return found;
}

}  // namespace

class HintsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void rules_data() {
        using F = HintFacts*;
        QTest::addColumn<HintFacts>("known");
        QTest::addColumn<QString>("hints");
        const auto row = [](const char* name, const char* hints, Change change) {
            QTest::newRow(name) << facts(change) << QString(hints);
        };
        row("it ran", "", [](F) {});
        row(".NET comes before fonts", "net dotnet48 mono9, fonts simsun.ttc", [](F f) {
            f->isMonoMissing = true;
            f->missingFonts = QStringList{"simsun.ttc"};
            f->findings |= LogMissingMono | LogMissingFont;
        });
        row("components of the log, installed or not", "components mfc42 vcrun6", [](F f) {
            f->missingComponents = QStringList{"mfc42", "vcrun6"};
            f->installedComponents = QStringList{"mfc42"};
        });
        row("Visual Basic", "components vbrun6", [](F f) { f->requiredComponent = "vbrun6"; });
        row("Visual Basic is installed", "", [](F f) {
            f->requiredComponent = "vbrun6";
            f->installedComponents = QStringList{"vbrun6"};
        });
        row("another runtime is the log's matter", "", [](F f) { f->requiredComponent = "dotnet48"; });
        row("game", "game", [](F f) { f->isGame = true; });
        row("game with DXVK", "", [](F f) { f->isGame = f->hasDxvk = true; });
        row("console", "console", [](F f) { f->isConsole = true; });
        row("steam", "steam", [](F f) { f->isSteamRuntimeEnded = true; });
        row("no window", "wine", [](F f) { f->hasLaunchResult = false; });
        row("no window, translators", "translator", [](F f) {
            f->hasLaunchResult = false;
            f->hasTranslators = true;
        });
        row("a window, then a crash", "wine", [](F f) { f->findings |= LogCrash; });
        row("a window, then lost symbols", "wine", [](F f) { f->findings |= LogDebugSymbolError; });
        row("a window, then a failed set-up", "", [](F f) { f->findings |= LogSetupApiError; });
        row("already staging", "", [](F f) {
            f->hasLaunchResult = false;
            f->runner = "lumora-wine-staging";
        });
        row("staging can't be had", "", [](F f) {
            f->hasLaunchResult = false;
            f->knownRunners = QStringList{"lumora-wine10-stable"};
        });
        for (const LogFinding explained : {LogMissingComponent, LogMissingFont, LogMissingMono}) {
            HintFacts known = facts([](F f) { f->hasLaunchResult = false; });
            known.findings |= explained;
            QTest::newRow(qPrintable(QString("explained by %1").arg(explained))) << known << QString();
        }
        row("another hint stands already", "console", [](F f) {
            f->hasLaunchResult = false;
            f->isConsole = true;
        });
        row("all at once", "net dotnet48 mono9, fonts a.ttf, components mfc42, game, console, steam, windows",
            [](F f) {
                f->isMonoMissing = f->isGame = f->isConsole = f->isSteamRuntimeEnded = true;
                f->missingFonts = QStringList{"a.ttf"};
                f->missingComponents = QStringList{"mfc42"};
                f->hasLaunchResult = false;
                f->findings |= LogMissingWinRT;
            });
        row("Windows runtime", "wine, windows", [](F f) {
            f->hasLaunchResult = false;
            f->findings |= LogMissingWinRT;
        });
    }
    void rules() {
        QFETCH(HintFacts, known);
        QTEST(described(HintRules::of(known)), "hints");
    }

    void namesAreLimited() {
        HintFacts known;
        known.missingFonts = QStringList{QString(HintRules::LongestName + 1, 'x')};
        QVERIFY(HintRules::of(known).isEmpty());
        for (int i = 0; i < 100000; ++i)
            known.missingFonts << QString("%1.ttf").arg(i);
        QCOMPARE(HintRules::of(known).first().names.size(), HintRules::MostNames);
    }

    void steamRuntime_data() {
        const Table<QString, int, bool> row("runner", "findings", "isBroken");
        row("proton", "lumora-ge-proton10", LogBrokenSteamRuntime, true);
        row("other proton", "ge-proton9", LogBrokenSteamRuntime | LogCrash, true);
        row("wine", "lumora-wine10-stable", LogBrokenSteamRuntime, false);
        row("healthy", "ge-proton9", LogCrash, false);
    }
    void steamRuntime() {
        QFETCH(QString, runner);
        QFETCH(int, findings);
        HintFacts known;
        known.runner = runner;
        known.findings = findings;
        QTEST(HintRules::isSteamRuntimeBroken(known), "isBroken");
    }

    void pageHasLinks() {
        using Kind = Hint::Kind;
        const QString page = HintHtml::page({{Kind::DotNetRuntime, {"dotnet48", "mono9"}},
                                             {Kind::MissingFonts, {"simsun.ttc", "a b.ttf"}},
                                             {Kind::GameGraphics, {}},
                                             {Kind::OtherWineOrTranslator, {}}},
                                            "https://help.example.org/a?b=1&c=2");
        QCOMPARE(targets(page),
                 (QStringList{"component:dotnet48", "component:mono9", "fonts:simsun.ttc:a b.ttf",
                              "{drive_c}/windows/Fonts", "https://help.example.org/a?b=1&c=2", "tab:0",
                              "tab:0", "tab:1"}));
        QVERIFY(
            page.startsWith("<html><body><ul><li style=\"margin-top:4px; margin-bottom:4px; "
                            "margin-right:0px\">The application need .NET runtime"));
        QVERIFY(page.contains("Missing Fonts for app: simsun.ttc a b.ttf"));
        QCOMPARE(HintHtml::page({}, "https://x"), QString());
    }

    void itemsOfThePage_data() {
        using Kind = Hint::Kind;
        const QString link = R"(<a  style="text-decoration: none;" href="%1">%2</a>)";
        const Table<int, QString> row("kind", "item");
        row("components", int(Kind::MissingComponents),
            "Missing Components for app:<ul><li>" + link.arg("component:mfc42", "mfc42") + "</li></ul>");
        row("game", int(Kind::GameGraphics),
            "You can try to " + link.arg("https://x", "install graphics card driver") + " , and setup " +
                link.arg("tab:0", "dxvk, vkd3d or proton") + " for gamming.");
        row("console", int(Kind::Console), "For console applications, you can run it in terminal");
        row("steam", int(Kind::SteamRuntimeEnded),
            "Killed broken steam runtime, please restart the application");
        row("wine", int(Kind::OtherWine),
            link.arg("tab:0",
                     "Application is not running as expected, you can try switch wine version and "
                     "relaunch in Basic Configuration page"));
        row("windows", int(Kind::OlderWindows),
            link.arg("tab:0",
                     "Application use some windows runtime libs that not been implemented in wine,"
                     "you can try to switch Windows version to Windows 7 and relaunch"));
    }
    void itemsOfThePage() {
        QFETCH(int, kind);
        QFETCH(QString, item);
        QCOMPARE(
            HintHtml::page({{Hint::Kind(kind), {"mfc42"}}}, "https://x"),
            QString("<html><body><ul><li style=\"margin-top:4px; margin-bottom:4px; margin-right:0px\">") +
                item + "</li></ul></body></html>");
    }

    void namesAreEscaped_data() {
        const Table<QString> row("name");
        row("markup", "<img src=x><b>");
        row("attribute", "\" onclick=\"x\" href=\"http://evil");
        row("controls", QString("a\nb") + QChar(1) + QChar(0xffff));
        row("place markers", "%1 %2 %3");
    }
    void namesAreEscaped() {
        QFETCH(QString, name);
        const QString page = HintHtml::page(
            {{Hint::Kind::MissingComponents, {name}}, {Hint::Kind::MissingFonts, {name}}}, "https://x");
        QCOMPARE(targets(page).size(), 3);
        QVERIFY(targets(page).first().startsWith("component:"));
        QVERIFY(!page.contains("<img") && !page.contains("<b>"));
        QVERIFY(HintHtml::withFontsFixed(page) != page);
    }

    void fontsAreFixedOnce() {
        const QString page = HintHtml::page({{Hint::Kind::MissingFonts, {"a.ttf"}}}, {});
        const QString fixed = HintHtml::withFontsFixed(page);
        QCOMPARE(targets(fixed), (QStringList{"", "{drive_c}/windows/Fonts"}));
        QVERIFY(fixed.contains("color: green;") && fixed.contains("Missing fonts has been fixed"));
        QVERIFY(!fixed.contains("Try to fix"));
        QCOMPARE(HintHtml::withFontsFixed("<html><body>"), QString("<html><body>"));
        QCOMPARE(HintHtml::withFontsFixed("<html/>"), QString("<html/>"));
    }

    void links_data() {
        using Kind = HintLink::Kind;
        const Table<QString, int, QString> row("anchor", "kind", "value");
        row("component", "component:dotnet48", int(Kind::Component), "dotnet48");
        row("fonts", "fonts:simsun.ttc:a b.ttf", int(Kind::Fonts), "simsun.ttc|a b.ttf");
        row("fixed fonts", "", int(Kind::None), "");
        row("drive", "{drive_c}/windows/Fonts", int(Kind::DriveC), "/windows/Fonts");
        row("web", "https://example.org/x", int(Kind::Web), "https://example.org/x");
        row("no web", "httpx://example.org", int(Kind::None), "httpx://example.org");
        row("page", "tab:1", int(Kind::Page), "1");
        row("no page", "tab:x", int(Kind::None), "");
        row("runner", "setrunner:lumora-wine-staging", int(Kind::Runner), "lumora-wine-staging");
        row("file", "file:///etc/passwd", int(Kind::None), "");
        row("script", "javascript:x", int(Kind::None), "");
    }
    void links() {
        QFETCH(QString, anchor);
        QFETCH(int, kind);
        const HintLink link = HintLink::of(QUrl(anchor));
        QCOMPARE(int(link.kind), kind);
        QTEST(link.kind == HintLink::Kind::Page    ? QString::number(link.page)
              : link.kind == HintLink::Kind::Fonts ? link.names.join('|')
                                                   : link.text,
              "value");
    }

    /// A piece that ends within a line, a character or an escape sequence changes nothing. "!" marks errors.
    void runningLog_data() {
        const Table<QByteArrayList, QStringList> row("pieces", "lines");
        row("one piece", {"a\nb\n"}, {"a", "b"});
        row("cut lines", {"he", "llo\nwor", "ld\n"}, {"hello", "world"});
        row("cut character", {"\xe5\xad", "\x97\n"}, {"\xe5\xad\x97"});
        row("no end of line", {"a\nrest"}, {"a", "rest"});
        row("nothing", {}, {});
        row("colours", {"\x1b[31", "mred\x1b[0m  \n"}, {"red"});
        row("trace", {"0024:trace:seh:x\n0024:fixme:win:y\n"}, {"0024:fixme:win:y"});
        row("coloured trace", {"0024:\x1b[33mtrace:seh:x\n0024:err:a\n"}, {"!0024:err:a"});
        const QByteArray ends("end\nnext\n");
        const QByteArray lines = QByteArray("0024:trace:x\n").repeated(6000);
        row("a piece above 64 KiB ends in a trace", {lines + "0024:tra", "ce:x\nplain\n"}, {"plain"});
        row("a piece above 64 KiB ends in a line", {lines + "pl", "ain :trace:\n" + ends}, {"end", "next"});
        row("a trace above 64 KiB", {"0024:trace:" + lines.simplified().left(70000), ends}, {"next"});
        row("errors", {"ERROR x\nan error\nError\n"}, {"!ERROR x", "!an error", "Error"});
    }
    void runningLog() {
        QFETCH(QByteArrayList, pieces);
        LiveLog log(nullptr);
        QStringList lines;
        connect(&log, &LiveLog::linesRead, this, [&lines](const QVector<LiveLogLine>& read) {
            for (const LiveLogLine& line : read)
                lines << (line.isError ? '!' + line.text : line.text);
        });
        QSignalSpy ended(&log, &LiveLog::ended);
        for (const QByteArray& piece : pieces)
            log.add(piece);
        log.end();
        QTRY_COMPARE(ended.count(), 1);
        QTEST(lines, "lines");
    }

    /// What waits while a batch is read: the newest whole lines, and a count of the others.
    void waitingBytesAreBounded() {
        LiveLog log(nullptr);
        qint64 count = 0;
        QStringList parts;
        connect(&log, &LiveLog::linesRead, this, [&](const QVector<LiveLogLine>& read) {
            for (const LiveLogLine& line : read) {
                count += 1 + line.skipped;
                parts << line.text;
            }
        });
        QSignalSpy ended(&log, &LiveLog::ended);
        log.add("first\nincomplete ");
        const QByteArray line = QByteArray(1000, 'x') + '\n';
        for (int i = 0; i < 80; ++i)
            log.add(line.repeated(1000));
        log.end();
        QTRY_COMPARE(ended.count(), 1);
        QCOMPARE(count, 80001);
        parts.removeDuplicates();
        QCOMPARE(parts, (QStringList{"first", line.trimmed()}));
    }

    /// Zeros are what the launch script leaves of the beginning.
    void endOfTheLogIsCopied() {
        const QTemporaryDir folder;
        const QString log = folder.filePath("log");
        const QString target = folder.filePath("kept.log");
        QFile file(log);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(qint64(1) << 40) && file.seek(file.size()));
        file.write("cut\n" + QByteArray("line\n").repeated(LogFile::KeptBytes / 5 - 1));
        file.close();
        const LogFile::Copy copy = LogFile::copy(log, target);
        QVERIFY(copy.isWritten && copy.isShortened);
        const QByteArray kept = LogFile::end(target, LogFile::KeptBytes).value_or(QByteArray());
        QCOMPARE(kept.size(), LogFile::KeptBytes / 5 * 5 - 5);
        QVERIFY(kept.startsWith("line\n"));
    }

    void onlyRegularLogsAreRead() {
        const QTemporaryDir folder;
        const QString pipe = folder.filePath("pipe");
        const QString link = folder.filePath("link");
        QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        QVERIFY(QFile::link("/etc/passwd", link));
        for (const QString& log : {pipe, link, folder.path(), folder.filePath("absent")}) {
            QVERIFY2(!LogFile::copy(log, folder.filePath("kept.log")).isWritten, qPrintable(log));
            QVERIFY(!QFileInfo::exists(folder.filePath("kept.log")));
        }
    }

    void floodIsCut() {
        LiveLog log(nullptr);
        QVector<LiveLogLine> lines;
        connect(&log, &LiveLog::linesRead, this,
                [&lines](const QVector<LiveLogLine>& read) { lines += read; });
        QSignalSpy ended(&log, &LiveLog::ended);
        log.add(QByteArray("first\n") + QByteArray("a\n").repeated(DebugLog::MaxLines));
        log.end();
        QTRY_COMPARE(ended.count(), 1);
        QCOMPARE(lines.size(), DebugLog::MaxLines);
        QCOMPARE(lines.first().skipped, 1);
    }
};

QTEST_GUILESS_MAIN(HintsTest)
#include "HintsTest.moc"
