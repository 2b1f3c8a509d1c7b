#include "launch/run/LaunchVerdict.h"

#include <QJsonArray>
#include <QJsonDocument>

#include "launch/repair/BottleDamage.h"
#include "launch/repair/ProblemReport.h"
#include "launch/repair/RepairOffer.h"
#include "launch/repair/RunnerChoice.h"
#include "launch/repair/StartCheck.h"
#include "launch/winelog/LogFindings.h"
#include "launch/winelog/LogParseRule.h"
#include "launch/winelog/WineLogParser.h"
#include "support/Table.h"

using V = LaunchVerdict;

Q_DECLARE_METATYPE(LaunchFacts)

/// What an ended program and its log mean.
class LaunchVerdictTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void verdicts_data() {
        using F = LaunchFacts;
        // facts: those that differ from a windowed file's first start of which nothing was seen
        const TestSupport::Table<F, int, bool, bool, QString> table("facts", "next", "canWeFix",
                                                                    "isSuccessed", "message");
        const auto row = [&table](const char* tag, std::initializer_list<bool F::*> set, int next,
                                  bool canWeFix, bool isSuccessed, const char* message) {
            F facts;
            for (const auto fact : set)
                facts.*fact = !(facts.*fact);
            table(tag, facts, next, canWeFix, isSuccessed, message);
        };
        const char lost[] = "No any fixing applied, launch failed";
        const char won[] = "No any fixing applied, but seems app not crashed";
        const char staging[] =
            "Application is not running as expected, try to using lumora-wine-staging and relaunch";
        const auto stored = &F::isFirstRun;
        row("ran", {&F::windowSeen}, V::Succeeded, false, false, won);
        row("no window", {}, V::Failed, false, false, lost);
        row("in a terminal", {&F::isConsole}, V::Succeeded, false, false, won);
        row("in none", {&F::isConsole, &F::isNotStarted}, V::Failed, false, false, lost);
        row("set-up failed", {&F::windowSeen, &F::installFailed}, V::Failed, false, false, lost);
        row("components", {&F::hasComponents, stored}, V::Offer, true, false, "");
        row("of one that ran", {&F::windowSeen, &F::hasComponents, &F::hasFonts}, V::Offer, true, false, "");
        row("by itself", {&F::autoFix, &F::hasFonts, &F::finished}, V::Repair, false, false, "");
        row("fonts", {&F::windowSeen, &F::hasFonts}, V::Offer, true, true, "");
        row("fonts, no window", {&F::hasFonts, &F::stagingKnown}, V::Offer, true, false, "");
        row("fonts, stored", {&F::windowSeen, &F::hasFonts, stored}, V::Offer, false, true, "");
        row("other repair", {&F::hasOtherRepair, &F::stagingKnown, stored}, V::Offer, true, false, "");
        row("other repair, ran", {&F::windowSeen, &F::hasOtherRepair}, V::Succeeded, false, false, won);
        row("staging", {&F::stagingKnown}, V::Offer, true, false, staging);
        row("staging, stored", {&F::stagingKnown, stored}, V::Offer, false, false, "");
        row("staging, by itself", {&F::stagingKnown, &F::autoFix}, V::Failed, false, false, lost);
        row("told already", {&F::finished}, V::Nothing, false, false, "");
    }
    void verdicts() {
        QFETCH(LaunchFacts, facts);
        const LaunchVerdict verdict = LaunchVerdict::of(facts);
        QTEST(int(verdict.next), "next");
        QTEST(verdict.canWeFix, "canWeFix");
        QTEST(verdict.isSuccessed, "isSuccessed");
        QTEST(verdict.message, "message");
    }

    void endMessage() {
        LaunchFacts facts;
        const QString ended = "Seems application has finished, exit code: 53";
        QCOMPARE(LaunchVerdict::endMessage(53, facts), ended + ", and app not been launched");
        facts.crashed = true;
        QCOMPARE(LaunchVerdict::endMessage(53, facts), ended + ", and crashed");
        facts.crashed = false;
        facts.windowSeen = true;
        QCOMPARE(LaunchVerdict::endMessage(53, facts), ended);
    }

    void findings_data() {
        // how: stored program, repairs by itself. names: found/fonts/runtime's version/its
        // component/tried/tried fonts
        const TestSupport::Table<int, QString, QString, QString> table("mask", "how", "names", "expected");
        const auto row = [&table](int mask, const char* how, const char* names, const char* expected) {
            table(qPrintable(QString("%1%2 %3").arg(mask).arg(how, names)), mask, how, names, expected);
        };
        const int mono = LogMissingMono;
        row(1, "", "/////", "/");
        row(2, "", "b a/////", "a b/|1 Try to install components:|1 a\nb");
        row(LogCrash | LogSetupApiError, "", "/////", "/ failed|0 Detech crash in wine logs");
        row(LogCrash | LogSetupApiError, "s", "/////", "/");
        row(mono, "", "/////", "mono9/|1 Try to install components:|1 mono9");
        row(mono, "", "dotnet48 a//4.0/dotnet48//",
            "dotnet48 a/|1 This application need .NET Framework 4.0.|1 Try to install components:|1 "
            "dotnet48\na");
        row(mono, "s", "a/////", "mono9 a/|1 Try to install components:|1 mono9\na");
        row(mono, "a", "a//4.0/dotnet48//", "a/|1 Try to install components:|1 a");
        row(mono, "", "////mono9/", "/|1 Try to install components:|1 mono9");
        row(6, "", "a b/x y///a/x",
            "b/y|1 This application missing fonts: y|1 Try to install components:|1 b");
        row(6, "a", "a/x///a/x", "/");
        row(4, "", "/y x////", "/x y|1 This application missing fonts: x,y");
        row(4, "s", "/x////", "/");
    }
    void findings() {
        QFETCH(int, mask);
        QFETCH(QString, how);
        QFETCH(QString, names);
        const auto words = [&names](int part) {
            return names.section('/', part, part).split(' ', Qt::SkipEmptyParts);
        };
        WineLogParser log;
        for (const QString& component : words(0))
            log.missingComponents.insert(component);
        for (const QString& font : words(1))
            log.missingFonts.insert(font);
        log.monoMissing = mask & LogMissingMono;
        const LogFindings::Asked asked{how != "s",        how == "a", words(2).value(0),
                                       words(3).value(0), words(4),   words(5)};
        const LogFindings findings = LogFindings::of(log, mask, asked);
        QString told = findings.components.join(' ') + '/' + findings.fonts.join(' ') +
                       (findings.installFailed ? " failed" : "");
        for (const LaunchMessage& message : findings.messages)
            told += '|' + QString::number(message.type) + ' ' + message.text;
        QTEST(told, "expected");
    }

    /// Of a stored program that nobody watches; -1 is an exit code that is not known.
    void failedStarts_data() {
        const TestSupport::Table<int, bool, bool, bool, bool> row("exit", "up", "stopped", "lacks", "failed");
        row("ended well", 0, false, false, false, false);
        row("ended badly", 53, false, false, false, true);
        row("after its window", 53, true, false, true, false);
        row("quit by the user", 1, false, true, true, false);
        row("killed by somebody else", 143, false, false, false, false);
        row("lacks something and says nothing", 0, false, false, true, true);
        row("end unknown", -1, false, false, false, false);
    }
    void failedStarts() {
        QFETCH(int, exit);
        QFETCH(bool, up);
        QFETCH(bool, stopped);
        QFETCH(bool, lacks);
        StartEnd end{"b", "u", {}, up, stopped};
        if (exit >= 0)
            end.exitCode = exit;
        QTEST(StartCheck::isFailure(end, lacks), "failed");
    }

    void linesAreShown() {
        WineLogParser log;
        QTextStream text("1:err:setupapi:x\n2:fixme:x\n");
        const int mask = log.parseStream(text);
        LogFindings::Asked asked;
        QStringList shown;
        for (const LaunchMessage& message : LogFindings::of(log, mask, asked).messages)
            shown << QString::number(message.type) + ' ' + message.text;
        QCOMPARE(shown, (QStringList{"1 Parsed wine error logs:", "0 1:err:setupapi:x",
                                     "1 Other wine error logs:", "0 1:err:setupapi:x", "0 2:fixme:x"}));
        asked.isFirstRun = false;
        QVERIFY(LogFindings::of(log, mask, asked).messages.isEmpty());
    }

    void offers_data() {
        const TestSupport::Table<QString, QString, QString> table("described", "fonts", "expected");
        const auto row = [&table](const char* tag, const char* described, const char* fonts,
                                  const char* expected) {
            table(tag, '[' + QString(described) + ']', fonts, expected);
        };
        row("sizes", R"({"name":"vcredist2013","available":true,"title":"x","files":[
                {"name":"a.exe","size":6500000,"host":"aka.ms"},{"name":"b.exe","size":-1,"host":"aka.ms"},
                {"name":"c.exe","size":2000,"cached":true,"host":"aka.ms"},{"name":"d.exe","size":-1},
                {"name":"e.exe","size":1000,"host":"","address":"/mirror/e.exe"}]})",
            "",
            "Repair installs Visual C++ 2013.|a.exe (6.5 MB) comes from aka.ms.|"
            "b.exe comes from aka.ms; its size is not known yet.|c.exe (2.0 kB) has been fetched already.|"
            "It is not known where d.exe can be had.|e.exe (1.0 kB) comes from /mirror/e.exe.");
        row("winetricks and what it needs",
            R"({"name":"own","title":"Own Thing","available":true,"needs":["Base"],"winetricks":"own1"},7,{})",
            "a.ttf",
            "Repair installs Own Thing.|Base is installed first.|The tool winetricks installs it (as "
            "\"own1\") and fetches what it needs.|Repair puts fonts of this system in the place of a.ttf.");
        row("not to be had",
            R"({"name":"own","available":false,"reasons":[{"code":"no-checksum","arguments":["x.exe"]}],
                "files":[{"name":"x.exe"}]})",
            "",
            "!own cannot be installed.|!No checksum of x.exe is known, and sources.json does not allow files "
            "without one.");
        row("nothing", "", "", "");
    }
    void offers() {
        QFETCH(QString, described);
        QFETCH(QString, fonts);
        QFETCH(QString, expected);
        const QJsonArray array = QJsonDocument::fromJson(described.toUtf8()).array();
        RepairOffer offer;
        offer.components = OfferedComponent::read(array);
        offer.fonts = fonts.split(' ', Qt::SkipEmptyParts);
        QStringList told;
        for (const RepairOffer::Line& line : offer.lines())
            told += (line.isError ? "!" : "") + line.text;
        QCOMPARE(told.join('|'), expected);
        QCOMPARE(offer.toolTip(), expected.replace("!", "").replace('|', '\n'));
    }

    void reports() {
        ProblemReport report;
        report.program = "Harbour";
        report.wine = "10.0";
        report.tried = QStringList{"Gecko was installed."};
        report.log = QStringList("old");
        for (int i = 1; i < ProblemReport::LogLines; ++i)
            report.log += "x";
        report.log += R"(Z:\\data\\Anna-M\\a.exe, C:\users\anna-m\x, /home/bob/y, /data/anna-m/z, anna-max)";
        const QString text = report.text("/data/anna-m", "anna-m");
        QCOMPARE(text.section('\n', 0, 8),
                 QString("Program: Harbour\nDiagnosis: not known\nCellarix: not known\n"
                         "Wine: 10.0 (not known)\nSystem: not known\nSession: not known\n"
                         "Graphics: not known\n\nWhat was tried:"));
        QVERIFY(text.contains("- Gecko was installed.\n") && !text.contains("old"));
        QCOMPARE(
            text.trimmed().section('\n', -1),
            QString(R"(- Z:@home_dir@\\a.exe, C:\users\@user@\x, @home_dir@/y, @home_dir@/z, anna-max)"));
    }

    void runnerFor32Bit_data() {
        const TestSupport::Table<QString, QString, QString, QString> row("installed", "supported", "isNew",
                                                                         "repaired");
        const QString stable = "lumora-wine10-stable", staging = "lumora-wine-staging";
        row("nothing known", "", "", stable, "");
        row("the default runs both", "wine-11.22 " + stable, "", stable, stable);
        row("another is installed", "ge-proton10 wine-9.9 wine-11.22-staging-tkg wine-11.22", staging,
            "wine-11.22", "wine-11.22");
        row("fetched, the usual first", "", "wine-11.22 " + staging, stable, staging);
        row("fetched, the newest", "", "wine-9.22-staging-tkg wine-11.8 wine-11.21", stable, "wine-11.21");
    }
    void runnerFor32Bit() {
        QFETCH(QString, installed);
        QFETCH(QString, supported);
        const RunnerChoice choice{installed.split(' ', Qt::SkipEmptyParts),
                                  supported.split(' ', Qt::SkipEmptyParts)};
        QTEST(choice.forNewBottle(), "isNew");
        QTEST(choice.forRepair(), "repaired");
    }

    void damage() {
        const QString system = "drive_c/windows/system32/";
        const BottleDamage core{1, {system + "KERNEL32.dll"}}, other{1, {system + "odd.dll"}}, many{21, {}};
        QVERIFY(core.isCause(false) && many.isCause(false) && other.isCause(true));
        QVERIFY(!other.isCause(false) && !BottleDamage().isCause(true));
        QCOMPARE(core.worst(), QString("kernel32.dll"));
    }
};

QTEST_GUILESS_MAIN(LaunchVerdictTest)
#include "LaunchVerdictTest.moc"
