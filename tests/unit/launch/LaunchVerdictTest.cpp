#include "launch/run/LaunchVerdict.h"

#include <QJsonArray>
#include <QJsonDocument>

#include "core/base/LogScrub.h"
#include "launch/repair/BottleDamage.h"
#include "launch/repair/ProblemReport.h"
#include "launch/repair/RepairOffer.h"
#include "launch/repair/RunnerChoice.h"
#include "launch/repair/StartCheck.h"
#include "launch/winelog/LogFindings.h"
#include "launch/winelog/LogParseRule.h"
#include "launch/winelog/WineLogParser.h"
#include "support/Table.h"

using TestSupport::Table;
using V = LaunchVerdict;

Q_DECLARE_METATYPE(LaunchFacts)
Q_DECLARE_METATYPE(LogFindings::Asked)

/// How an ended program and its log are judged, and what is offered then.
class LaunchVerdictTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void verdicts_data() {
        using F = LaunchFacts;
        // facts: those that differ from the first start of a file that showed no window
        const Table<F, int, QString, QString> table("facts", "next", "offer", "message");
        const auto row = [&table](const char* tag, std::initializer_list<bool F::*> set, int next,
                                  const char* offer = "", const char* message = "") {
            F facts;
            for (const auto fact : set)
                facts.*fact = !(facts.*fact);
            table(tag, facts, next, offer, message);
        };
        const char failed[] = "No any fixing applied, launch failed";
        const char succeeded[] = "No any fixing applied, but seems app not crashed";
        const auto stored = &F::isFirstRun;
        row("window seen", {&F::windowSeen}, V::Succeeded, "", succeeded);
        row("no window", {}, V::Failed, "", failed);
        row("in a terminal", {&F::isConsole}, V::Succeeded, "", succeeded);
        row("no terminal", {&F::isConsole, &F::isNotStarted}, V::Failed, "", failed);
        row("set-up failed", {&F::windowSeen, &F::installFailed}, V::Failed, "", failed);
        row("components, stored", {&F::hasComponents, stored}, V::Offer, "repair");
        row("components of one that ran", {&F::windowSeen, &F::hasComponents, &F::hasFonts}, V::Offer,
            "repair");
        row("repair without asking", {&F::autoFix, &F::hasFonts}, V::Repair);
        row("fonts of one that ran", {&F::windowSeen, &F::hasFonts}, V::Offer, "repair, it ran");
        row("fonts, no window", {&F::hasFonts, &F::stagingKnown}, V::Offer, "repair");
        row("fonts, stored, it ran", {&F::windowSeen, &F::hasFonts, stored}, V::Offer, "it ran");
        row("another repair", {&F::hasOtherRepair, &F::stagingKnown, stored}, V::Offer, "repair");
        row("another repair, it ran", {&F::windowSeen, &F::hasOtherRepair}, V::Succeeded, "", succeeded);
        row("staging", {&F::stagingKnown}, V::Offer, "repair",
            "Application is not running as expected, try to using lumora-wine-staging and relaunch");
        row("staging, stored", {&F::stagingKnown, stored}, V::Offer);
        row("staging, not asked for", {&F::stagingKnown, &F::autoFix}, V::Failed, "", failed);
    }
    void verdicts() {
        QFETCH(LaunchFacts, facts);
        const LaunchVerdict verdict = LaunchVerdict::of(facts);
        QTEST(int(verdict.next), "next");
        QStringList offer;
        if (verdict.canWeFix)
            offer << "repair";
        if (verdict.isSuccessed)
            offer << "it ran";
        QTEST(offer.join(", "), "offer");
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

    /// The same log each time: of a crashed set-up that misses Mono, components and fonts.
    void findings_data() {
        using Asked = LogFindings::Asked;
        const Table<Asked, QString, QString, QString> row("asked", "components", "fonts", "lines");
        Asked stored, byItself, version, tried;
        stored.isFirstRun = false;
        byItself.autoFix = true;
        version.dotnetVersion = "4.0";
        version.requiredComponent = "dotnet48";
        tried.triedComponents = QStringList{"jet40"};
        tried.triedFonts = QStringList{"a.ttf"};
        const QString crash = "Detech crash in wine logs|";
        const QString fonts = "This application missing fonts: a.ttf,b.ttf|",
                      install = "Try to install components:|";
        row("first start", Asked(), "mono9 dotnet48 jet40", "a.ttf b.ttf",
            crash + fonts + install + "mono9\ndotnet48\njet40");
        row("stored program", stored, "mono9 dotnet48 jet40", "", install + "mono9\ndotnet48\njet40");
        row("repair without asking", byItself, "dotnet48 jet40", "a.ttf b.ttf",
            crash + fonts + install + "dotnet48\njet40");
        row(".NET version known", version, "dotnet48 jet40", "a.ttf b.ttf",
            crash + "This application need .NET Framework 4.0.|" + fonts + install + "dotnet48\njet40");
        row("tried before", tried, "mono9 dotnet48", "b.ttf",
            crash + "This application missing fonts: b.ttf|" + install + "mono9\ndotnet48");
    }
    void findings() {
        QFETCH(LogFindings::Asked, asked);
        WineLogParser log;
        log.missingComponents = QSet<QString>{"jet40", "dotnet48"};
        log.missingFonts = QSet<QString>{"b.ttf", "a.ttf"};
        log.monoMissing = true;
        const int mask = LogCrash | LogSetupApiError | LogMissingFont;
        const LogFindings findings = LogFindings::of(log, mask, asked);
        QTEST(findings.components.join(' '), "components");
        QTEST(findings.fonts.join(' '), "fonts");
        QCOMPARE(findings.installFailed, asked.isFirstRun);
        QStringList lines;
        for (const LaunchMessage& message : findings.messages)
            lines << message.text;
        QTEST(lines.join('|'), "lines");
    }

    /// Of a stored program that was started without a banner; -1 is an unknown exit code.
    void failedStarts_data() {
        const Table<int, bool, bool, bool, bool> row("exitCode", "isUp", "isStopped", "hasComponents",
                                                     "isFailure");
        row("ended well", 0, false, false, false, false);
        row("ended badly", 53, false, false, false, true);
        row("after its window", 53, true, false, true, false);
        row("quit by the user", 1, false, true, true, false);
        row("killed by somebody else", 143, false, false, false, false);
        row("lacks something and says nothing", 0, false, false, true, true);
        row("end unknown", -1, false, false, false, false);
    }
    void failedStarts() {
        QFETCH(int, exitCode);
        QFETCH(bool, isUp);
        QFETCH(bool, isStopped);
        QFETCH(bool, hasComponents);
        StartEnd end{"b", "u", {}, isUp, isStopped};
        if (exitCode >= 0)
            end.exitCode = exitCode;
        QTEST(StartCheck::isFailure(end, hasComponents), "isFailure");
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
        const Table<QString, QString, QString> table("described", "fonts", "expected");
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

    void offeredSizes_data() {
        const Table<QVector<qint64>, QString, QString> row("sizes", "winetricks", "text");
        row("all known", {2000000, 1000000}, "", "3.0 MB");
        row("one unknown", {2000000, -1}, "", "at least 2.0 MB");
        row("none known", {-1, -1}, "", "size unknown");
        row("nothing fetched", {}, "", "");
        row("fetched by winetricks", {}, "mfc40", "size unknown");
    }
    void offeredSizes() {
        QFETCH(QVector<qint64>, sizes);
        OfferedComponent component;
        for (const qint64 size : sizes)
            component.files += OfferedFile{{}, size, false, {}};
        QFETCH(QString, winetricks);
        component.winetricks = winetricks;
        QTEST(component.sizeText(), "text");
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
        const QString text = report.text(LogScrub({{"/data/anna-m"}, "anna-m", {}}));
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
        const Table<QString, QString, QString, QString> row("installed", "supported", "isNew", "repaired");
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
