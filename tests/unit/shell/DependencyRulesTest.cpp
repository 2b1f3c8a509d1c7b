#include <QJsonArray>

#include "shell/configuration/components/DependencyCatalogue.h"
#include "shell/configuration/components/DependencyStates.h"
#include "support/Table.h"

using TestSupport::Table;

/// What the page of components knows without a window and without the service.
class DependencyRulesTest : public QObject {
    Q_OBJECT

    /// "ask X", "download X 30", "download X 30 of-unknown", "install X", "step X 2", "good X", "good X with
    /// A", "bad X", "cancelled X", "adopt X Y", "have X Y".
    static void tell(DependencyStates* states, const QString& event) {
        const QStringList words = event.split(' ');
        const QString kind = words[0], name = words[1];
        if (kind == "ask")
            states->request(name);
        else if (kind == "download")
            states->download(name, words[2].toULongLong() * 1024, words.size() > 3 ? 0 : 100 * 1024);
        else if (kind == "install")
            states->installing(name);
        else if (kind == "step")
            states->step(name, words[2].toInt(), 4);
        else if (kind == "good")
            states->done(name, {{"ok", true}, {"data", words.size() > 2 ? "[\"" + words[3] + "\"]" : ""}});
        else if (kind == "bad")
            states->done(name, {{"error", "why"}});
        else if (kind == "cancelled")
            states->done(name, {{"reasons", QJsonArray{QJsonObject{{"code", "cancelled"}}}}});
        else if (kind == "adopt")
            states->adopt(words.mid(1));
        else
            states->readInstalled(words.mid(1));
    }

private Q_SLOTS:
    void stories_data() {
        const Table<QString, QString, QString> row("events", "states", "queue");
        row("asked", "ask a", "a: Waiting for Download", "a");
        row("download", "ask a,download a 30", "a: 30K/100K", "a");
        row("download of unknown size", "ask a,download a 30 of-unknown", "a: 30K", "a");
        row("whole way", "ask a,download a 100,install a,good a", "a: Installed", "");
        row("again", "have a,ask a", "a: Waiting for Download", "a");
        row("again, in vain", "have a,ask a,bad a", "a: Installation Failed", "");
        row("again, taken back", "have a,ask a,cancelled a", "a: Installed", "");
        row("several", "ask a,ask b,bad a,install b", "a: Installation Failed|b: Installing", "b");
        row("first taken back", "ask a,ask b,cancelled a", "a: |b: Waiting for Download", "b");
        row("asked twice", "ask a,install a,ask a", "a: Installing", "a");
        row("end told twice", "ask a,good a,bad a", "a: Installed", "");
        row("progress after the end", "ask a,bad a,download a 1,install a", "a: Installation Failed", "");
        row("brings others", "ask a,good a with b", "a: Installed|b: Installed", "");
        row("brings what is asked for", "ask a,ask b,good a with b", "a: Installed|b: Waiting for Download",
            "b");
        row("somebody else's", "download a 1,install a", "a: ", "");
        row("somebody else's failure", "bad a", "a: Installation Failed", "");
        row("somebody else's again, in vain", "have a,bad a", "a: Installed", "");
        row("somebody else's success", "good a", "a: Installed", "");
        row("found under way", "adopt a b,ask c", "a: Installing|b: Waiting for Download", "a b c");
        row("found behind ours", "ask c,adopt a c", "a: Installing|c: Waiting for Download", "a c");
        row("found downloading", "ask a,download a 1,adopt a b", "a: 1K/100K", "a b");
        row("removed elsewhere", "have a b,have b", "a: |b: Installed", "");
        row("read while under way", "ask a,install a,have a", "a: Installing", "a");
    }
    void stories() {
        QFETCH(QString, events);
        QFETCH(QString, states);
        DependencyStates all;
        for (const QString& event : events.split(','))
            tell(&all, event);
        for (const QString& state : states.split('|'))
            QCOMPARE(all.of(state.left(1)).text(), state.mid(3));
        QTEST(all.queue().join(' '), "queue");
    }

    void progress_data() {
        const Table<QString, int> row("events", "percent");
        row("nothing known", "ask a,install a,download a 5 of-unknown", -1);
        row("download", "ask a,download a 30", 15);
        row("second file", "ask a,download a 100,download a 3", 50);
        row("steps", "ask a,download a 100,install a,step a 2", 75);
        row("steps alone", "ask a,install a,step a 2", 50);
        row("more than all", "ask a,download a 200,step a 9", 100);
        row("again", "ask a,step a 4,good a,ask a", -1);
        row("not under way", "step a 2,download a 9", -1);
    }
    void progress() {
        QFETCH(QString, events);
        DependencyStates all;
        for (const QString& event : events.split(','))
            tell(&all, event);
        QTEST(all.of("a").percent, "percent");
    }

    void catalogue() {
        const QJsonObject dependencies{
            {"a",
             QJsonObject{{"Description", "First"}, {"dlls", QJsonArray{"x"}}, {"needs", QJsonArray{"b"}}}},
            {"b", QJsonObject{{"Description", "Second"}}},
            {"bad", 7},
            {"", QJsonObject{{"Description", "No name"}}}};
        const QJsonObject search{
            {"x", QJsonArray{"a", "b"}}, {"y", QJsonArray{"gone", "a", 3}}, {"z", QJsonArray{"gone"}}};
        const QVector<DependencyEntry> entries = DependencyCatalogue::merge(dependencies, search);
        QCOMPARE(entries.size(), 2);
        QCOMPARE(entries[0].dlls, QStringList({"x", "y"}));
        QCOMPARE(entries[0].needs, QStringList("b"));
        QCOMPARE(entries[0].searchText(), QString("a First x y"));
        QCOMPARE(entries[1].searchText(), QString("b Second x"));
    }
};

QTEST_GUILESS_MAIN(DependencyRulesTest)
#include "DependencyRulesTest.moc"
