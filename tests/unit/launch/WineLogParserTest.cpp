#include <QDirIterator>
#include <atomic>
#include <thread>
#include <vector>

#include "launch/winelog/LogParseRule.h"
#include "launch/winelog/WineLogParser.h"
#include "support/Table.h"
#include "support/TestHome.h"

namespace {

QStringList sorted(const QSet<QString>& set) {
    QStringList list = set.values();
    list.sort();
    return list;
}

const QByteArray Database = "0024:fixme:msado15:recordset_supporterrorinfo_InterfaceSupportsErrorInfo (1, x)";

}  // namespace

/// What is found in Wine's logs, with the real catalogue of DLLs.
class WineLogParserTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void lines_data() {
        const TestSupport::Table<QByteArray, int, QStringList, int> table("log", "findings", "components",
                                                                          "others");
        const auto row = [&table](const char* name, const QByteArray& log, int findings,
                                  const QStringList& components = {}, int others = 0) {
            table(name, log, findings, components, others);
        };  // others: how many lines of interest without a finding
        const QByteArray dll =
            "0024:err:module:import_dll Library MSVCP140.dll (which is needed by L\"C:\\\\a.exe\") not found";
        const QByteArray text = "0024:trace:text:DrawTextExW L\"";
        const QByteArray process = "0024:trace:process:NtCreateUserProcess 0 image L\"C:\\\\";
        row("empty", "", 1);
        row("odd ends", "err:x\r\nerr:x\r", 1, {}, 1);
        row("marks inside",
            "a\n\xef\xbb\xbf"
            "err:x\nerr:\xe4\xb8\n",
            1, {}, 2);
        row("noise", "trace:seh:x\r\nerr:environ:init_peb x\n\nfixme:a:b 1\nfixme:a:b 1\r\nfixme:a:b 2", 1,
            {}, 2);
        row("mono", "0024:err:mscoree:CLRRuntimeInfo_GetRuntimeHost Wine Mono is not installed\n", 1 | 8, {},
            1);
        row("several",
            "err:setupapi:x\nx dbghelp:elf_search_auxv can't find symbol in module y\n"
            "python3: error while loading shared libraries: libz\n0:trace:seh:start_debugger Starting "
            "debugger L\"\"\n"
            "err:combase:RoGetActivationFactory Failed to find library for L\"Windows.UI\"",
            1 | 16 | 32 | 64 | 128 | 256, {}, 3);
        row("gecko",
            "err:mshtml:create_document_object Failed to init Gecko, returning CLASS_E_CLASSNOTAVAILABLE",
            1 | 2, {"gecko"}, 1);
        row("database", Database, 1 | 2, {"jet40", "mdac28"}, 1);
        row("dll loading", QByteArray(dll).replace("import_dll L", "import_dll loading l"), 1 | 2,
            {"vcredist2022"}, 1);
        row("dll unknown", QByteArray(dll).replace("MSVCP140", "unheard"), 1, {}, 1);
        row("function", "wine: Call from 0x1 to unimplemented function MSVCP140.dll.foo, Aborting", 1 | 2,
            {"vcredist2022"});
        row("function unknown", "wine: call from 0x1 to unimplemented function unheard.dll.foo, aborting", 1);
        row("text other framework", text + "\\8bf7\\5b89\\88c5 .net framework\"", 1 | 2, {"dotnet48"});
        row("text without request", text + ".NET Framework 4.5.2\"", 1);
        row("text runtime",
            text + "The following component is required: .NET Framework 3.5 Microsoft Visual C++ Runtime\"",
            1 | 2, {"vcredist2022"});
        row("debugger", process + "windows\\\\system32\\\\winedbg.exe\" cmdline L\"winedbg\"", 1 | 32);
        row("reporter", process + "x\\\\Bug\\0052eport.exe\" cmdline L\"\"", 1 | 32);
        row("pad", process + "CrashPadHandler.exe\" cmdline L\"\"", 1);
        row("no runtime", "err:eventlog:ReportEventW L\"App host version: 6.0.1\"", 1, {}, 1);
        row("runtime",
            "err:eventlog:ReportEventW L\"You must install .NET Desktop to run this application\"\nx\n"
            "err:eventlog:ReportEventW L\"App host version: 6.0.1\"",
            1 | 2, {"dotnetcoredesktop6"}, 2);
        row("runtime at once",
            "err:eventlog:ReportEventW You must install or update .NET to run this application. "
            "Framework: 'Microsoft.NETCore.App', version '8.0.0'",
            1 | 2, {"dotnetcoredesktop8"}, 1);
    }
    void lines() {
        QFETCH(QByteArray, log);
        WineLogParser parser;
        QTEST(parser.parseFile(write(log)), "findings");
        QTEST(sorted(parser.missingComponents), "components");
        QTEST(parser.otherLogs.size(), "others");
        QCOMPARE(parser.monoMissing, log.contains("Mono"));
        for (int ahead = 0; ahead < 40; ++ahead)
            sameAsStream(QByteArray(ahead, 'x') + log);
    }

    void fonts() {
        WineLogParser parser;
        QCOMPARE(
            parser.parseFile(write("0:warn:file:x L\"C:\\\\WINDOWS\\\\fonts\\\\simsun.ttc\" Not Found\n")),
            1 | 4);
        QCOMPARE(sorted(parser.missingFonts), QStringList("simsun.ttc"));
        QCOMPARE(parser.parsedLogs.size(), 1);
    }

    void theEndOfALongLog() {
        QByteArray log = Database + "\n" + QByteArray(11 << 20, 'x') + "\nerr:setupapi:y\n";
        WineLogParser parser;
        QCOMPARE(parser.parseFile(write(log)), 1 | 16);
        // Parsed lines are kept from file to file, the others are not.
        QCOMPARE(parser.parseFile(write("err:other\nerr:setupapi:y")), 1 | 16);
        QCOMPARE(parser.parsedLogs, QStringList("err:setupapi:y"));
        QCOMPARE(parser.otherLogs, QStringList({"err:other", "err:setupapi:y"}));
        QCOMPARE(WineLogParser().parseFile(m_home.path() + "/none"), 1);
    }

    /// The library judges programs that have ended on several threads.
    void severalAtOnce() {
        const QByteArray install =
            "err:eventlog:ReportEventW You must install .NET to run this application\n";
        const QByteArray version = "err:eventlog:ReportEventW App host version: 6.0.1\n";
        // Each log begins with the second half of what the other's rules look for.
        const QList<QPair<QString, QString>> logs = {
            {m_home.write("one", version + QByteArray(0x10000, '\n') + Database + "\n" + install),
             "jet40 mdac28"},
            {m_home.write("other",
                          "0:warn:file:x L\"C:\\\\windows\\\\Fonts\\\\a.ttf\" not found\nwine: Call from 0x1 "
                          "to unimplemented function MSVCP140.dll.foo, aborting\n"),
             "a.ttf vcredist2022"}};
        std::atomic<int> wrong{0};
        std::vector<std::thread> threads;
        for (int thread = 0; thread < 4; ++thread) {
            threads.emplace_back([&, log = logs[thread % 2]] {
                for (int run = 0; run < 50; ++run) {
                    WineLogParser parser;
                    parser.parseFile(log.first);
                    wrong += (sorted(parser.missingFonts) + sorted(parser.missingComponents)).join(' ') !=
                             log.second;
                }
            });
        }
        for (std::thread& thread : threads)
            thread.join();
        QCOMPARE(wrong.load(), 0);
    }

    /// Logs of real programs; each file's name holds the expected components or fonts and the findings.
    void corpus() {
        QDirIterator logs(QString(TEST_SOURCE_DIR) + "/tests/data/winelog", {"*.txt"}, QDir::Files);
        int count = 0;
        while (logs.hasNext()) {
            const QString file = logs.next();
            const QStringList wanted = logs.fileInfo().completeBaseName().split('-').value(1).split('+');
            WineLogParser parser;
            const int findings = parser.parseFile(file);
            QStringList found = sorted(parser.missingComponents) + sorted(parser.missingFonts);
            found += QString::number(findings);
            QVERIFY2(found == wanted, qPrintable(file + ": " + found.join('+')));
            sameAsStream(TestSupport::readFile(file));
            ++count;
        }
        QVERIFY(count >= 6);
    }

private:
    QString write(const QByteArray& log) const { return m_home.write("log", log); }

    /// The fast scan of a file finds the same as the loop over its lines.
    void sameAsStream(const QByteArray& log) {
        WineLogParser quick, plain;
        QTextStream stream(log);
        const int expected = plain.parseStream(stream);
        QCOMPARE(quick.parseFile(write(log)), expected);
        QCOMPARE(quick.missingComponents, plain.missingComponents);
        QCOMPARE(quick.missingFonts, plain.missingFonts);
        QCOMPARE(quick.parsedLogs, plain.parsedLogs);
        QCOMPARE(quick.otherLogs, plain.otherLogs);
    }

    TestSupport::TestHome m_home;
};

QTEST_GUILESS_MAIN(WineLogParserTest)
#include "WineLogParserTest.moc"
