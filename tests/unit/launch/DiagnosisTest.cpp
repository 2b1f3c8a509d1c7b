#include "launch/repair/Diagnosis.h"

#include "launch/repair/FailureFacts.h"
#include "launch/winelog/WineLogParser.h"
#include "support/Table.h"
#include "support/TestHome.h"

namespace {

const char CommandLine[] = "launcher: /usr/bin/wine Z:\\home\\user\\BattlEye.exe\n";

}  // namespace

Q_DECLARE_METATYPE(FailureFacts)

/// Why a program has failed, and what Repair does about it.
class DiagnosisTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    /// The rows of data/diagnosis.tsv: the reason that the user reads, and the lines of the log behind it.
    void ofALog_data() {
        const TestSupport::Table<QString, QByteArray> table("expected", "log");
        const QList<QByteArray> rows =
            TestSupport::readFile(QString(TEST_SOURCE_DIR) + "/tests/data/diagnosis.tsv").split('\n');
        for (const QByteArray& row : rows) {
            const QList<QByteArray> fields = row.split('\t');
            if (fields.size() >= 2)
                table(fields[1].left(160).constData(), QString::fromUtf8(fields[0]),
                      CommandLine + QByteArrayList(fields.mid(1)).join('\n') + '\n');
        }
    }
    void ofALog() {
        QFETCH(QByteArray, log);
        WineLogParser parser;
        FailureFacts facts;
        facts.addLog(parser, parser.parseFile(m_home.write("log", log)));
        facts.components = parser.missingComponents.values();
        facts.components.sort();
        if (facts.components.isEmpty())
            facts.components = facts.missingComponents();
        facts.fonts = parser.missingFonts.values();
        facts.exitCode = 53;
        facts.isExitCodeKnown = true;
        QTEST(Diagnosis::of(facts).reason, "expected");
    }

    /// The repairs that are possible change the text, and the reason selects the repair.
    void repairs_data() {
        using Repairs = QVector<RepairAction>;
        const FailureSign dll{Failure::MissingDll, "mfc42.dll", "mfc42"};
        const FailureSign driver{Failure::KernelDriver, "x.sys", {}}, crash{Failure::Crash, {}, {}};
        const FailureSign damaged{Failure::DamagedBottle, "x.dll", {}};
        const auto staging = RepairAction::SwitchToStaging;
        const TestSupport::Table<FailureFacts, int, QString> table("facts", "action", "reason");
        const auto row = [&table](const char* name, const FailureFacts& facts, RepairAction action,
                                  const char* reason) { table(name, facts, int(action), reason); };
        const auto facts = [](const QVector<FailureSign>& signs, const QStringList& components,
                              const Repairs& possible = {}) {
            FailureFacts made;
            made.signs = signs;
            made.components = components;
            made.possible = possible;
            return made;
        };
        row("staging", facts({crash}, {}, {staging}), staging,
            "It crashed. Repair tries another version of Wine.");
        row("own advice", facts({driver, crash}, {}, {staging}), staging,
            "It needs the Windows driver x.sys, and Wine cannot load drivers. Look for a version that needs "
            "no "
            "driver.");
        row("components first", facts({dll}, {"mfc42"}, {staging}), RepairAction::InstallComponents,
            "It needs mfc42.dll, which is part of Visual C++ 6. Repair installs it.");
        row("damaged bottle", facts({damaged}, {"mfc42"}, {RepairAction::RenewBottle}),
            RepairAction::RenewBottle,
            "The bottle is damaged: x.dll of Windows cannot be loaded. Repair renews the files of Windows "
            "and "
            "keeps your own.");
        row("bottle not damaged", facts({crash}, {}, {RepairAction::RenewBottle}), RepairAction::None,
            "It crashed. Another version of Wine may run it.");
        FailureFacts tried = facts({dll}, {});
        tried.triedComponents << "mfc42";
        row("tried", tried, RepairAction::None,
            "It needs mfc42.dll, which is part of Visual C++ 6. A repair with Visual C++ 6 did not help.");
        tried.failedComponents << "mfc42";
        row("tried in vain", tried, RepairAction::None,
            "It needs mfc42.dll, which is part of Visual C++ 6. Visual C++ 6 could not be installed.");
        FailureFacts mono = facts({{Failure::MissingMono, {}, "mono9"}}, {"mono9"});
        mono.downloadBytes = 43700000;
        row("size known", mono, RepairAction::InstallComponents,
            "It needs .NET; Repair installs Wine Mono (about 44 MB).");
        FailureFacts refused = facts({dll}, {"mfc42"}, {RepairAction::LaunchAgain});
        refused.launcherReason = "No.";
        row("refused", refused, RepairAction::LaunchAgain, "No.");
        FailureFacts silent;
        silent.isSilent = true;
        row("silent", silent, RepairAction::None,
            "It hangs: its threads wait for each other. Another version of Wine may run it.");
        FailureFacts package;
        package.isPackage = package.isExitCodeKnown = true;
        package.exitCode = 84;
        row("package", package, RepairAction::None,
            "The installer package is damaged (1620). Download it once more.");
        FailureFacts slow;
        slow.isExitCodeKnown = true;
        slow.seconds = 60;
        row("slow", slow, RepairAction::None,
            "It ended without showing a window (exit code 0). View Logs shows what Wine said.");
    }
    void repairs() {
        QFETCH(FailureFacts, facts);
        const Diagnosis diagnosis = Diagnosis::of(facts);
        QTEST(int(diagnosis.action), "action");
        QTEST(diagnosis.reason, "reason");
    }

    /// Many signs, long names and control characters are limited.
    void hostileLog() {
        QByteArray log = CommandLine;
        for (int i = 0; i < 20000; ++i)
            log += "0024:err:module:import_dll Library <b>" + QByteArray::number(i) + "\x1b" +
                   QByteArray(i % 9 ? 5 : 5000, 'x') + ".dll (which is needed by L\"a\") not found\n";
        WineLogParser parser;
        FailureFacts facts;
        facts.addLog(parser, parser.parseFile(m_home.write("log", log)));
        QCOMPARE(facts.signs.size(), 64);
        for (const FailureSign& sign : qAsConst(facts.signs))
            QVERIFY2(sign.detail.size() <= 80 && !sign.detail.contains('\x1b'), qPrintable(sign.detail));
    }

private:
    TestSupport::TestHome m_home;
};

QTEST_GUILESS_MAIN(DiagnosisTest)
#include "DiagnosisTest.moc"
