#include "store/install/StoreProgram.h"

#include <QJsonObject>

#include "store/records/VeskClientAppInfo.h"
#include "support/FakeBottleService.h"
#include "support/LogCapture.h"
#include "support/PrivateBus.h"
#include "support/Table.h"
#include "support/TestHome.h"

using TestSupport::LogCapture;
using TestSupport::Table;

namespace {

/// Programs from "id=name" words.
QJsonObject programs(const QString& words) {
    QJsonObject result;
    for (const QString& word : words.split(' ', Qt::SkipEmptyParts))
        result[word.section('=', 0, 0)] = QJsonObject{{"name", word.section('=', 1)}};
    return result;
}

OpenAPI::VeskClientAppInfo app(const QString& json) {
    return OpenAPI::VeskClientAppInfo(json);
}

}  // namespace

class StoreProgramTest : public QObject {
    Q_OBJECT

    TestSupport::TestHome home;
    TestSupport::PrivateBus bus;
    TestSupport::FakeBottleService fake;

private Q_SLOTS:
    void initTestCase() { QVERIFY(fake.start()); }

    void chooses_data() {
        const Table<QString, QString, QString> row("programs", "appName", "id");
        row("none", "", "Seven", "");
        row("by its name", "a=Six b=Seven", "Seven", "b");
        row("the first of two", "a=Seven b=Seven", "Seven", "a");
        row("another name", "a=Six b=Eight", "Seven", "a");
        row("an application without a name", "a=Six b=", "", "b");
    }
    void chooses() {
        QFETCH(QString, programs);
        QFETCH(QString, appName);
        QTEST(StoreProgram::choose(::programs(programs), appName), "id");
    }

    void finds_data() {
        const Table<QString, QString, QString, QString, int> row("app", "numbered", "keyed", "found",
                                                                 "questions");
        const QString seven = R"({"appId":7,"appInfoId":"k7","appName":"Seven"})";
        row("in the first bottle", seven, "a=Seven", "b=Seven", "program-7/a", 1);
        row("by any name before the second bottle", seven, "a=Six", "b=Seven", "program-7/a", 1);
        row("in the second bottle", seven, "", "b=Seven", "program-k7/b", 2);
        row("nowhere", seven, "", "", "/", 2);
        row("without a key", R"({"appId":7,"appName":"Seven"})", "", "b=Seven", "/", 1);
        row("without a number", R"({"appInfoId":"k7","appName":"Seven"})", "a=Seven", "b=Seven", "/", 0);
        row("with a bad number", R"({"appId":"x","appInfoId":"k7"})", "a=Seven", "b=Seven", "/", 0);
    }
    void finds() {
        QFETCH(QString, numbered);
        QFETCH(QString, keyed);
        QFETCH(QString, found);
        QFETCH(int, questions);
        QFETCH(QString, app);
        fake.setBottle("program-7", {{"External_Programs", programs(numbered)}});
        fake.setBottle("program-k7", {{"External_Programs", programs(keyed)}});
        fake.clearCalls();
        const LogCapture log;
        QStringList answers;
        StoreProgram::find(::app(app), this, [&](const ProgramRef& program) {
            answers << program.bottle + '/' + program.uuid;
        });
        QCOMPARE(answers, QStringList());
        QTRY_COMPARE(answers, QStringList(found));
        QCOMPARE(fake.calls("get").size(), questions);
        QCOMPARE(log.contains(QtWarningMsg, "Failed to get programId for appId: 7"),
                 found == "/" && questions > 0);
    }

    void forgetsWithItsContext() {
        fake.setHeld("Bottles.get:program-7", "{}");
        fake.clearCalls();
        auto context = std::make_unique<QObject>();
        bool isTaken = false;
        StoreProgram::find(app(R"({"appId":7})"), context.get(), [&](const ProgramRef&) { isTaken = true; });
        fake.waitForCall("get");
        context.reset();
        QCOMPARE(fake.release("get"), 1);
        bool isNextTaken = false;
        StoreProgram::find(app(R"({"appId":8})"), this, [&](const ProgramRef&) { isNextTaken = true; });
        QTRY_VERIFY(isNextTaken);
        QVERIFY(!isTaken);
    }
};

QTEST_GUILESS_MAIN(StoreProgramTest)
#include "StoreProgramTest.moc"
