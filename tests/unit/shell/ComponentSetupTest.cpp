#include "shell/configuration/rules/ComponentSetup.h"

#include "support/Table.h"

using TestSupport::Table;

/// Events in the order in which they come, as words: "wait X", "progress X 50", "start X", "busy X", "good
/// X", "bad X", "lost", "leave", "choose X", "prepare X", "adopt X".
class ComponentSetupTest : public QObject {
    Q_OBJECT

    static void tell(ComponentSetup* setup, const QString& event) {
        const QStringList words = event.split(' ');
        const QString name = words.value(1);
        if (words[0] == "choose")
            setup->choose(ComponentSetup::valueOf(name));
        else if (words[0] == "prepare")
            setup->prepare(name);
        else if (words[0] == "adopt")
            setup->adopt({{"other", "DONE"}, {name, "DOWNLOADING"}});
        else if (words[0] == "wait")
            setup->waiting(name);
        else if (words[0] == "progress")
            setup->progress(name, words.value(2).toULongLong(), 100);
        else if (words[0] == "start")
            setup->started(name);
        else if (words[0] == "busy")
            setup->blocked(name);
        else if (words[0] == "good" || words[0] == "bad")
            setup->done(name, words[0] == "good", "why");
        else if (words[0] == "lost")
            setup->fail("gone");
        else
            setup->leave();
    }

private Q_SLOTS:
    void stories_data() {
        using Phase = ComponentSetup::Phase;
        const Table<QString, int, QString, QString> row("events", "phase", "good", "text");
        row("asked", "choose n", int(Phase::Asked), "old", "");
        row("made ready", "prepare n,progress n 7,lost,bad n", int(Phase::Preparing), "old", "Preparing n");
        row("was made ready", "prepare n,choose n,good n", int(Phase::Idle), "n", "");
        row("waits", "choose n,wait n", int(Phase::Waiting), "old", "Waiting for download n");
        row("downloads", "choose n,wait n,progress n 7", int(Phase::Downloading), "old", "downloading...");
        row("sets up", "choose n,wait n,start n", int(Phase::SettingUp), "old", "Setuping n");
        row("installed already", "choose n,start n,good n", int(Phase::Idle), "n", "");
        row("whole way", "choose n,wait n,progress n 7,start n,good n", int(Phase::Idle), "n", "");
        row("programs run", "choose n,wait n,progress n 7,busy n", int(Phase::Asked), "old", "");
        row("programs ran", "adopt n,busy x,busy n,start n,good n", int(Phase::Idle), "n", "");
        row("off", "choose -,start -,good -", int(Phase::Idle), "", "");
        row("fails", "choose n,wait n,start n,bad n", int(Phase::Failed), "old", "Setup failed: n");
        row("turning off fails", "choose -,bad -", int(Phase::Failed), "old", "Setup failed: Disabled");
        row("seen", "choose n,bad n,leave", int(Phase::Idle), "old", "");
        row("cancelled, then the end comes", "choose n,wait n,leave,bad n", int(Phase::Idle), "old", "");
        row("double end", "choose n,good n,good n,bad n", int(Phase::Idle), "n", "");
        row("another component", "choose n,wait x,progress x 9,start x,bad x,good x", int(Phase::Asked),
            "old", "");
        row("by somebody else", "start x,good x", int(Phase::Idle), "x", "");
        row("somebody else's failure", "start x,bad x", int(Phase::Idle), "old", "");
        row("not back", "choose n,start n,wait n,progress n 5", int(Phase::SettingUp), "old", "Setuping n");
        row("service lost", "choose n,progress n 5,lost", int(Phase::Failed), "old", "Setup failed: n");
        row("lost without work", "lost", int(Phase::Idle), "old", "");
        row("lost, then told", "choose n,lost,good n", int(Phase::Failed), "old", "Setup failed: n");
        row("chosen again", "choose n,bad n,choose m,good m", int(Phase::Idle), "m", "");
        row("was under way", "adopt n,progress n 5,start n,good n", int(Phase::Idle), "n", "");
    }
    void stories() {
        QFETCH(QString, events);
        ComponentSetup setup;
        setup.setGood("old");
        for (const QString& event : events.split(','))
            tell(&setup, event);
        QTEST(int(setup.phase()), "phase");
        QTEST(setup.good(), "good");
        QTEST(setup.text(), "text");
        QCOMPARE(setup.name().isEmpty(), setup.phase() == ComponentSetup::Phase::Idle);
    }

    void progressNeverRunsBackwards() {
        ComponentSetup setup;
        setup.choose("n");
        QVERIFY(setup.progress("n", 0, 0));
        QCOMPARE(setup.percent(), -1);
        QVERIFY(setup.progress("n", 50, 100));
        QVERIFY(!setup.progress("n", 20, 100));
        QVERIFY(setup.progress("n", 900, 100));
        QCOMPARE(setup.percent(), 100);
    }
};

QTEST_APPLESS_MAIN(ComponentSetupTest)
#include "ComponentSetupTest.moc"
