#include <QJsonObject>
#include <QTranslator>
#include <QUrl>

#include "store/install/CommonInfoBaseDialog.h"
#include "store/install/FileSelectWidget.h"
#include "store/install/PostRunStep.h"
#include "store/install/SetupFileName.h"
#include "store/install/SetupPackages.h"
#include "store/install/SetupProgress.h"
#include "store/install/SetupRecord.h"
#include "store/install/SetupTitle.h"
#include "support/Table.h"
#include "support/TestHome.h"

using State = SetupPackages::State;
using TestSupport::Table;
Q_DECLARE_METATYPE(PostRunStep)
Q_DECLARE_METATYPE(SetupPackages)
Q_DECLARE_METATYPE(State)

/// Puts a mark before each text, with its places turned round.
class Marked : public QTranslator {
public:
    bool isEmpty() const override { return false; }
    QString translate(const char*, const char* source, const char*, int) const override {
        return '!' + QString(source).replace("%2 of %3", "%3 / %2");
    }
};

class InstallRulesTest : public QObject {
    Q_OBJECT

    TestSupport::TestHome m_home;

private Q_SLOTS:
    void steps_data() {
        const Table<int, int, int, int> row("step", "steps", "progress", "target");
        row("first of four", 0, 4, 0, 25);
        row("third of three", 2, 3, 66, 100);
        row("the end", 4, 4, 100, 100);
        row("beyond it", 9, 4, 100, 100);
        row("no steps", 0, 0, 0, 100);
        row("negative", -3, -1, 0, 0);
        row("huge", 2147483647, 2147483647, 100, 100);
    }
    void steps() {
        QFETCH(int, step);
        QFETCH(int, steps);
        SetupProgress progress;
        progress.progress = 7;
        QCOMPARE(progress.beginStep(step, steps), 7);
        QTEST(progress.progress, "progress");
        QTEST(progress.target, "target");
        while (progress.creep())
            QVERIFY(progress.progress <= progress.target);
        QTEST(progress.progress, "target");
    }

    void afterTheRun_data() {
        const Table<QStringList, bool, PostRunStep> row("paths", "isSetUp", "step");
        row("nothing from a set-up", {}, true, PostRunStep::DeleteBottle);
        row("a portable program", {}, false, PostRunStep::AddFile);
        row("programs of a set-up", {"C:\\a.exe"}, true, PostRunStep::Keep);
        row("programs beside a portable one", {"C:\\a.exe"}, false, PostRunStep::Keep);
        row("the file is there", {"C:\\a.exe", "/home/u/s.exe"}, true, PostRunStep::AlreadyAdded);
        row("the portable file is there", {"/home/u/s.exe"}, false, PostRunStep::AlreadyAdded);
    }
    void afterTheRun() {
        QFETCH(QStringList, paths);
        QFETCH(bool, isSetUp);
        QJsonObject programs;
        for (const QString& path : paths)
            programs[QString::number(programs.size())] = QJsonObject{{"path", path}};
        QTEST(postRunStep(programs, "/home/u/s.exe", isSetUp), "step");
    }

    void packages_data() {
        const Table<SetupPackages, State, QString> row("packages", "state", "toInstall");
        const QStringList wine{"w"}, standard{"lumora-wine10-stable"};
        row("a package", {wine, {}, {}, {}}, State::Installed, "w");
        row("a runner", {{}, {}, wine, {}}, State::Installed, "w");
        row("in the archive", {{}, wine, standard, {}, true}, State::Missing, "w");
        row("in the archive, no store", {{}, wine, standard, {}}, State::Replaced, "w");
        row("at the service", {{}, {}, standard, wine}, State::Missing, "w");
        row("not to be had", {{}, {}, standard, {}}, State::Replaced, "w");
        row("no Wine at all", {{}, {}, {}, {}}, State::Missing, "w");
        row("no Wine yet", {{}, {}, {}, standard}, State::Missing, standard.first());
        row("another runner", {{}, {}, {"x"}, {}}, State::Missing, "w");
    }
    void packages() {
        QFETCH(SetupPackages, packages);
        QTEST(packages.of("w"), "state");
        QTEST(packages.toInstall("w"), "toInstall");
    }

    /// No pattern, option or path passes for a package.
    void packageNames() {
        const SetupPackages asked = SetupPackages::ask({"dpkg", "*", "dp*", "--help", "", "a b"});
        QCOMPARE(asked.installed, QStringList("dpkg"));
        QCOMPARE(asked.available, QStringList());
    }

    void fileNames_data() {
        const Table<QString, QByteArray, QString> row("url", "disposition", "name");
        row("address", "http://x/d/Setup%20One.exe?a=b", "", "Setup One.exe");
        row("header", "http://x/get", "attachment; filename=\"One.EXE\"", "One.exe");
        row("encoded header", "http://x/get", "attachment; filename=a; filename*=UTF-8''%E7%BD%91.exe",
            QString::fromUtf8("\u7f51.exe"));
        row("language", "http://x/", "inline; FILENAME*=utf-8'en'a%2Fb.exe", "b.exe");
        row("another suffix", "http://x/one.php", "", "one.php.exe");
        row("no name", "http://x/", "", "My App.exe");
        row("climbs", "http://x/", "filename=\"../../.bashrc\"", "bashrc.exe");
        row("climbs back", "http://x/", "filename=\"..\\..\\a.exe\"", "a.exe");
        row("encoded path", "http://x/%2e%2e%2fa.exe", "", "a.exe");
        row("hidden letters", "http://x/a%E2%80%AEb%00c.exe", "", "abc.exe");
        row("an option", "http://x/--a.exe", "", "a.exe");
        row("only dots", "http://x/...", "filename=\"..\"", "My App.exe");
        row("long", "http://x/" + QString(500, 'a') + ".exe", "", QString(120, 'a') + ".exe");
    }
    void fileNames() {
        QFETCH(QString, url);
        QFETCH(QByteArray, disposition);
        QTEST(SetupFileName::of(QUrl(url), disposition, "My App", "exe"), "name");
        QCOMPARE(SetupFileName::of(QUrl("http://x/app.yaml"), {}, "", "yml"), QString("app.yml"));
    }

    void freePath() {
        const QString taken = m_home.write("d/a.b.exe", "1");
        const QString directory = QFileInfo(taken).path();
        QCOMPARE(SetupFileName::freePath(directory, "b.exe"), directory + "/b.exe");
        QCOMPARE(SetupFileName::freePath(directory, "a.b.exe"), directory + "/a.b (1).exe");
    }

    void kinds() {
        QCOMPARE(SetupFileName::suffixOf("MZ\x90"), QString("exe"));
        QCOMPARE(SetupFileName::suffixOf("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"), QString("msi"));
        QCOMPARE(SetupFileName::suffixOf("PK\3\4"), QString("zip"));
        for (const char* text : {"", "M", "<html>", "PK", "\xD0\xCF"})
            QCOMPARE(SetupFileName::suffixOf(text), QString());
    }

    void drops() {
        const QString setup = m_home.write("d/S.MSI", "1"), text = m_home.write("d/a.txt", "1");
        const auto local = [](const QString& path) { return QUrl::fromLocalFile(path); };
        QCOMPARE(FileSelectWidget::setupIn({QUrl("http://x/a.exe"), local(text), local(m_home.path()),
                                            local("/gone.exe"), local(setup)}),
                 setup);
        QCOMPARE(FileSelectWidget::setupIn({local(text)}), QString());
    }

    void links_data() {
        const Table<QString, bool> row("url", "isLink");
        row("web", "https://x.example/a b?c=<d>", true);
        row("script", "javascript:alert(1)", false);
        row("file", "file:///etc/passwd", false);
        row("no address", "<b>x</b>", false);
        row("no host", "http:///x", false);
    }
    void links() {
        QFETCH(QString, url);
        const QString html = webLinkHtml(url);
        QTEST(html.startsWith("<a "), "isLink");
        QVERIFY(!breakable(QString(5000, 'a')).contains(QString(17, 'a')));
        QVERIFY2(!html.contains("<d>") && !html.contains("<b>"), qPrintable(html));
    }

    void titles_data() {
        const Table<QString> row("translated");
        row("Finishing", "!Finishing");
        row("Installing a b.exe with winetricks", "!Installing a b.exe with winetricks");
        row("Downloading a: %1.exe: 1.5 MiB of 3 MiB", "!Downloading a: %1.exe: 3 MiB / 1.5 MiB");
        row("Downloading a.exe", "!Downloading a.exe");
        row("Running ", "Running ");
        row("Registers the video filters", "Registers the video filters");
    }
    void titles() {
        Marked marked;
        QCoreApplication::installTranslator(&marked);
        QTEST(setupTitle(QTest::currentDataTag()), "translated");
        QCoreApplication::removeTranslator(&marked);
    }

    void record() {
        SetupRecord record;
        record.setupFile = "/home/u/Setup.exe";
        record.logLines = QStringList{"one", "two"};
        record.runner = "r";
        record.programs = 2;
        record.isBottleReady = true;
        const QJsonObject expected{{"tid", 1},
                                   {"action", "setup_yml"},
                                   {"successed", "no"},
                                   {"exename", "Setup.exe"},
                                   {"fileinfo_64", "e30="},
                                   {"errorLogs_64", "b25lCnR3bw=="},
                                   {"rating", -1},
                                   {"runner", "r"},
                                   {"program_cnt", 2},
                                   {"canceled", "no"},
                                   {"bottle_setuped", "yes"}};
        QCOMPARE(record.toJson({{"tid", 1}}), expected);
    }
};

QTEST_MAIN(InstallRulesTest)
#include "InstallRulesTest.moc"
