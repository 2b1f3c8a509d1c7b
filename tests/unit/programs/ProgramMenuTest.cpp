#include <QtTest>

#include "shell/library/ProgramMenu.h"

using namespace ProgramMenu;

class ProgramMenuTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void layouts() {
        const Layout shared = layoutFor("public/x");
        QCOMPARE(shared.before, QVector<Action>({Action::EditDetails, Action::CreateDesktopIcon,
                                                 Action::Feedback, Action::Remove}));
        QVERIFY(shared.quickTools.isEmpty() && shared.after.isEmpty());
        const Layout own = layoutFor("office");
        QCOMPARE((own.before + own.quickTools + own.after).size(), ActionCount);
        QCOMPARE(own.quickTools.first(), Action::OpenInTerminal);
        QCOMPARE(own.after.last(), Action::Remove);
    }

    void shownEntries() {
        Facts facts;
        facts.bottle = "office";
        QVERIFY(!isShown(Action::PackagedApps, facts));
        facts.runner = "wine";
        QVERIFY(isShown(Action::PackagedApps, facts));
        facts.runner = "ge-proton9";
        QVERIFY(!isShown(Action::PackagedApps, facts));
        QVERIFY(isShown(Action::CreateDesktopIcon, facts));
        facts.hasShortcut = true;
        QVERIFY(!isShown(Action::CreateDesktopIcon, facts));
        QVERIFY(!isShown(Action::FileAssociations, facts));
        facts.hasAssociations = true;
        QVERIFY(isShown(Action::FileAssociations, facts));
        QVERIFY(!isShown(Action::Translator, facts));
        facts.emulators.installed.insert("box", "b");
        QVERIFY(isShown(Action::Translator, facts));
        QVERIFY(isShown(Action::DumpManifest, facts));
        facts.bottle = "program-0123abcd";
        QVERIFY(!isShown(Action::DumpManifest, facts));
    }

    void bottleGoesWithItsOnlyProgram() {
        const auto removes = [](const QJsonObject& record) {
            return removesBottle(Facts::of("office", "a", record));
        };
        const QJsonObject program;
        QVERIFY(removes({{"External_Programs", QJsonObject{{"a", program}}}}));
        QVERIFY(!removes({{"External_Programs", QJsonObject{{"a", program}, {"b", program}}}}));
        QVERIFY(!removes({}));
    }
};

QTEST_APPLESS_MAIN(ProgramMenuTest)
#include "ProgramMenuTest.moc"
