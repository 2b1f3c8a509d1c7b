#include "launch/repair/ProgramAppFixer.h"

#include <QJsonDocument>
#include <QtTest>

#include "support/FakeBottleService.h"
#include "support/PrivateBus.h"
#include "support/TestHome.h"

using namespace TestSupport;

namespace {
const char Mono[] = "err:mscoree:CLRRuntimeInfo_GetRuntimeHost Wine Mono is not installed\n";
const char Dll[] = "err:module:import_dll Library MSVCP140.dll (which is needed by L\"a.exe\") not found\n";
const char Database[] = "fixme:msado15:recordset_supporterrorinfo_InterfaceSupportsErrorInfo (1, x)\n";
}  // namespace

class ProgramAppFixerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void checks() {
        const TestHome home;
        PrivateBus bus;
        FakeBottleService service;
        QVERIFY(service.start());
        struct Row {
            QByteArray log;  // none for "-"
            const char* bottle;
            const char* program;
            QStringList components;  // sorted
            const char* command;     // "" when there is no action; #: the components
            const char* shown = nullptr;
        };
        const char notes[] = "cellarix,--fixup,notes,u,#", dashed[] = "cellarix,--fixup,--,-a,u,#";
        const Row rows[] = {
            {Mono, "no service", "Notes", {"mono9"}, nullptr},
            {"-", "notes", "Notes", {}, ""},
            {"trace:seh:start_debugger Starting debugger L\"x\"\n", "notes", "Notes", {}, ""},
            {Mono, "none", "Notes", {}, ""},
            {Mono, "notes", "Notes", {"mono9"}, notes},
            {QByteArray(Mono) + Dll, "notes", "Notes", {"vcredist2022"}, notes},
            {Database, "notes", "Notes", {"jet40", "mdac28"}, notes},
            {Mono, "a,--update", "Notes", {"mono9"}, ""},
            {Mono, "public/a b%2", "A & B", {"mono9"}, "cellarix,--fixup,public/a b%2,u,#"},
            {Mono, "-a", "<b>A</b> & %1", {"mono9"}, dashed, "&lt;b&gt;A&lt;/b&gt; &amp; %1"},
        };
        for (const Row& row : rows) {
            const QString file = home.write("bottle/logs/wine-program-u.txt", row.log);
            if (row.log == "-")
                QFile::remove(file);
            const QJsonObject programs{{"u", QJsonObject{{"name", row.program}}}};
            if (row.bottle != QByteArray("none"))
                service.setBottle(row.bottle,
                                  {{"Path", home.path() + "/bottle"}, {"External_Programs", programs}});
            const QJsonArray capabilities{row.shown ? "body-markup" : "body"};
            service.setAnswers("GetCapabilities", {{{"list", capabilities}}});
            service.setAnswers("Notify", {{{"number", 1}}});
            service.clearCalls();
            QVERIFY(!row.command || service.takeName("org.freedesktop.Notifications"));

            ProgramAppFixer fixer(row.bottle, "u", true);
            QSignalSpy fetched(&fixer, &ProgramAppFixer::fixComponentsFetched);
            const ProgramFixRecord record = fixer.checkProgram();
            const QStringList found = record.missingComponents;
            QStringList sorted = found;
            sorted.sort();
            QCOMPARE(sorted, row.components);
            const bool isFinding = !found.isEmpty();
            QCOMPARE(record.bottlesName + record.uuid, isFinding ? QString(row.bottle) + "u" : QString());
            QCOMPARE(record.parsedLogs.isEmpty(), !isFinding);
            QCOMPARE(fetched.value(0), isFinding ? QVariantList({"u", found}) : QVariantList());
            const auto calls = service.calls("Notify");
            QCOMPARE(calls.size(), int(isFinding && row.command));
            if (calls.isEmpty())
                continue;
            QCOMPARE(calls[0].signature, "susssasa{sv}i");
            const QString command = QString(row.command).replace("#", found.join(','));
            const QJsonArray actions{"_open", "View"};
            const QJsonObject hints{{"x-lumora-action-_open", command}};
            const QString body = QString("The program %1 is running abnormally, you can try to fix it")
                                     .arg(row.shown ? row.shown : row.program);
            QCOMPARE(calls[0].arguments, (QJsonArray{"cellarix", 0, "cellarix", "Cellarix", body,
                                                     *row.command ? actions : QJsonArray(),
                                                     *row.command ? hints : QJsonObject(), 3000}));
        }
    }

    void json() {
        const QByteArray read =
            R"({"bottlesName":"","missingComponents":["c"],"parsedLogs":["","l"],"uuid":"u"})";
        const QByteArray odd =
            R"({"bottlesName":1,"missingComponents":["c"],"parsedLogs":[{},"l"],"uuid":"u"})";
        for (const QByteArray& text : {read, odd, QByteArray("{}")}) {
            const auto record = ProgramFixRecord::fromJson(QJsonDocument::fromJson(text).object());
            const QByteArray back =
                QJsonDocument(ProgramFixRecord::toJson(record)).toJson(QJsonDocument::Compact);
            QCOMPARE(back, text == "{}"
                               ? R"({"bottlesName":"","missingComponents":[],"parsedLogs":[],"uuid":""})"
                               : read);
        }
    }
};

QTEST_GUILESS_MAIN(ProgramAppFixerTest)
#include "ProgramAppFixerTest.moc"
