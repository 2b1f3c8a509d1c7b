#include <QtTest>

#include "ServiceFixture.h"

namespace {

const QString Id = "7b1b4b1e-0000-4000-8000-000000000001";

QVariantList argumentsFor(QString signature, const QString& text) {
    QVariantList arguments;
    for (const QChar type : signature.replace("as", "a")) {
        if (type == 'a')
            arguments += QStringList{text};
        else
            arguments += type == 's'   ? QVariant(text)
                         : type == 'b' ? QVariant(true)
                         : type == 'i' ? QVariant(96)
                                       : QVariant(qlonglong(0));
    }
    return arguments;
}

}  // namespace

/// What needs no Wine: the contract, hostile callers, the service's life.
class ServiceBusTest : public QObject {
    Q_OBJECT

    ServiceFixture m_service;

    void makeBottle(const QString& name, const QByteArray& settings) {
        m_service.write("bottles/" + name + "/bottle.yml", settings);
    }
    QByteArray settingsOf(const QString& name) {
        return TestSupport::readFile(m_service.bottlePath(name) + "/bottle.yml");
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_service.start()); }

    /// What clients may call and how is compared with their proxies elsewhere.
    void contract() {
        for (const char* name : {"", ".Bottles", ".Components", ".Templates", ".Programs", ".CleanUp",
                                 ".Repair", ".InstallerManager", ".OfflineDependency"}) {
            const auto live = m_service.introspect(QString("com.lumora.Manager") + name);
            QVERIFY2(!live.methods.isEmpty(), name);
            QCOMPARE(live.undocumented, QStringList());
        }
        QCOMPARE(m_service.callManager("GetVersion").arguments().value(0).toString(), "3.3.4.008");
    }

    void everyMethodAnswers() {
        for (const QString& method : m_service.introspect("com.lumora.Manager.Bottles").methods) {
            const QString name = method.section(':', 0, 0), signature = method.section(':', 1, 1);
            if (signature.isEmpty())
                continue;
            const QDBusMessage reply = m_service.call(name, argumentsFor(signature, "no-such\nbottle"));
            QVERIFY2(reply.errorName().startsWith("com.lumora.Error."), qPrintable(name));
            QVERIFY(reply.errorMessage().endsWith('.'));
            QCOMPARE(m_service.errorName(name, argumentsFor(signature + 'i', "x")), "InvalidArgs");
        }
        QCOMPARE(m_service.errorName("noSuchMethod"), "org.freedesktop.DBus.Error.UnknownMethod");
    }

    void brokenSettingsAreReportedAndKept() {
        const QByteArray broken = "Runner: {torn\n";
        makeBottle("broken", broken);
        QCOMPARE(m_service.errorName("get", {"broken"}), "Failed");
        const QString record = R"({"id":"%1","path":"C:\\a.exe"})";
        QCOMPARE(m_service.errorName("updateExternalProgram", {"broken", record.arg(Id)}), "Failed");
        QCOMPARE(settingsOf("broken"), broken);
        QCOMPARE(m_service.text("listAllPrograms"), "[]");
        QCOMPARE(m_service.error("delete", {"broken"}), QString());
        QVERIFY(!QFileInfo::exists(m_service.bottlePath("broken")));
        // Comes after all signals that calls up to here caused.
        QTRY_VERIFY(m_service.signalLog.contains("bottles_deleted(broken)"));
    }

    void programsOfAHandMadeBottle() {
        m_service.signalLog.clear();
        makeBottle("hand", "Own: [1, 2]\nRunner: lumora-wine10-stable\n");
        const auto update = [&](const QString& fields) {
            return m_service.error("updateExternalProgram", {"hand", "{\"id\":\"" + Id + '"' + fields + '}'});
        };
        QVERIFY(update(",\"stars\":3").contains("needs a path"));
        QCOMPARE(update(R"(,"name":"n","path":"C:\\a.exe")"), QString());
        QCOMPARE(update(",\"stars\":3"), QString());
        QCOMPARE(update(",\"stars\":3"), QString());
        QTRY_COMPARE(m_service.signalLog.size(), 2);
        QVERIFY(m_service.signalLog[0].startsWith("program_added(hand, " + Id + ", {"));
        QVERIFY(m_service.signalLog[1].startsWith("program_updated(hand, " + Id + ", {"));
        QVERIFY(m_service.signalLog[1].contains("\"name\":\"n\""));
        QVERIFY(settingsOf("hand").startsWith("Own:"));

        // What could never be read again is refused, and the bottle stays as it was.
        QVERIFY(update(",\"x\":" + QString(80, '[') + QString(80, ']')).contains("nothing was changed"));
        QCOMPARE(m_service.error("get", {"hand"}), QString());

        m_service.signalLog.clear();
        QCOMPARE(m_service.errorName("removeExternalProgram", {"hand", "other"}), "NoSuchProgram");

        const auto launchedPath = [&] {
            const QByteArray data = TestSupport::readFile(m_service.bottlePath("hand") + "/launch.json");
            return QJsonDocument::fromJson(data)["programs"][Id]["path"].toString();
        };
        QCOMPARE(launchedPath(), "C:\\a.exe");
        makeBottle("hand", settingsOf("hand").replace("C:\\\\a.exe", R"(C:\\users\\ann\\edited.exe)"));
        m_service.call("get", {"hand"});
        QCOMPARE(launchedPath(), "C:\\users\\ann\\edited.exe");
        const QJsonArray summaries = m_service.json("listAllPrograms").array();
        QCOMPARE(summaries.size(), 1);
        QCOMPARE(summaries[0]["uuid"].toString(), Id);
        QCOMPARE(summaries[0]["stars"].toInt(), 3);

        QJsonObject form{{"bottlesName", "hand"}, {"programUuid", Id}, {"name", "N: #"}};
        const auto dump = [&] {
            return m_service.text("dumpManifest", {QString(QJsonDocument(form).toJson())});
        };
        QVERIFY(dump().contains("must be text"));
        for (const char* key :
             {"introduction", "downloadUrl", "packageSize", "contributor", "category", "contributorEmail"})
            form[key] = key == QLatin1String("downloadUrl") ? "http://t.example" : "t";
        const QByteArray recipe = TestSupport::readFile(dump());
        QVERIFY2(
            recipe.contains("Name: \"N: #\"") && recipe.contains("edited.exe") && !recipe.contains("ann"),
            recipe.constData());

        m_service.call("removeExternalProgram", {"hand", Id});
        QTRY_COMPARE(m_service.signalLog, QStringList("program_deleted(hand, " + Id + ')'));
        QCOMPARE(m_service.text("listBottlesAllPrograms", {"hand"}), "[]");
    }

    void publicBottles() {
        const QString query = R"({"filename":"a.exe","md5sum":"abc","peinfo":{}})";
        m_service.write("public-bottles.json", R"([{"bottle":"public/office","md5sum":["abc"]}])");
        QCOMPARE(m_service.text("checkPublicBottles", {query}), "public/office");
        QCOMPARE(m_service.errorName("checkPublicBottles", {"[]"}), "InvalidArgs");
    }

    void secondServiceOnTheSameDataGivesUp() {
        const auto second = TestSupport::runProcess(SERVICE_EXECUTABLE, {});
        QCOMPARE(second.exitCode, 1);
        QVERIFY(m_service.log().contains("in use by a service of another session"));
    }

    void quitEndsAndStartsAnew() {
        QCOMPARE(m_service.callManager("Quit").type(), QDBusMessage::ReplyMessage);
        QVERIFY(m_service.process().waitForFinished());
        QCOMPARE(m_service.process().exitCode(), 0);
        for (const char* name : {".creating-left", "public/.deleting-left"})
            QVERIFY(QDir().mkpath(m_service.bottlePath(name) + "/drive_c"));
        QVERIFY(m_service.start());
        QTRY_COMPARE(m_service.unfinished("bottles") + m_service.unfinished("bottles/public"), QStringList());
        QVERIFY(m_service.log().contains("an earlier run of the service was interrupted"));
    }

    void busLossEndsTheService() {
        m_service.stopBus();
        QVERIFY(m_service.process().waitForFinished(10000));
    }
};

QTEST_GUILESS_MAIN(ServiceBusTest)
#include "ServiceBusTest.moc"
