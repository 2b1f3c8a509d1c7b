#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QXmlStreamReader>
#include <QtTest>

#include "ServiceFixture.h"

namespace {

// The wire format that clients are built against: name, types in, types out.
const char* const Methods[] = {"list::s",
                               "get:s:s",
                               "createBottles:ss:s",
                               "delete:s:",
                               "getEmulators:s:s",
                               "setEmulator:ss:",
                               "setRunner:ssb:",
                               "setDxvk:ssb:",
                               "setVkD3D:ssb:",
                               "getInstallingComponents:ss:s",
                               "cancelInstallingComponent:sss:",
                               "installDependency:ss:",
                               "reinstallDependency:ss:",
                               "getInstallingDependency:s:s",
                               "cancelInstallingDependency:s:",
                               "setDPI:si:",
                               "setCpuRendering:sb:",
                               "setDiscreteGpu:sb:",
                               "setMemOptimized:sb:",
                               "setNTSync:sb:",
                               "setD3dRenderer:ss:",
                               "setWindowsVersion:ss:",
                               "listDllOverrides:s:s",
                               "updateDllOverride:sssb:",
                               "getExternalProgramsDllList:s:s",
                               "getExternalProgramsUpdateExes:s:s",
                               "listFontReplacements:s:s",
                               "addFontReplacements:sss:",
                               "removeFontReplacement:ss:",
                               "listAllPrograms::s",
                               "listBottlesAllPrograms:s:s",
                               "updateExternalProgram:ss:",
                               "removeExternalProgram:ss:",
                               "scanApplicationLinks:sxb:s",
                               "createDesktopEntry:ss:",
                               "killProgram:ss:",
                               "killWineServer:s:",
                               "run_command:ss:",
                               "exportFileAssociations:sas:",
                               "dumpManifest:s:s",
                               "checkPublicBottles:s:s",
                               "getRunnerVersion:s:s"};
const char* const Signals[] = {"dependencySetupDone:sss",
                               "dependencyDownloadProgress:ssuus",
                               "dependencySetupDescription:sss",
                               "dependencySetupStepNotify:ssii",
                               "bottles_deleted:s",
                               "program_deleted:ss",
                               "program_added:sss",
                               "program_updated:sss",
                               "program_exited:s",
                               "component_waiting_downloaded:sss",
                               "component_setup_start:sss",
                               "component_setup_done:ssss"};

struct Interface {
    QStringList methods;
    QStringList signalNames;
    QStringList undocumented;
};

Interface parseInterface(const QString& xml, const QString& wanted) {
    Interface result;
    QXmlStreamReader reader(xml);
    bool inside = false;
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::EndElement && reader.name() == "interface")
            inside = false;
        if (!reader.isStartElement())
            continue;
        const QString name = reader.attributes().value("name").toString();
        if (reader.name() == "interface")
            inside = name == wanted;
        if (!inside || (reader.name() != "method" && reader.name() != "signal"))
            continue;
        const bool isSignal = reader.name() == "signal";
        QString in, out;
        int docs = 0, arguments = 0;
        while (!(reader.readNext() == QXmlStreamReader::EndElement &&
                 (reader.name() == "method" || reader.name() == "signal"))) {
            if (!reader.isStartElement())
                continue;
            if (reader.name() == "annotation")
                ++docs;
            if (reader.name() != "arg")
                continue;
            ++arguments;
            (reader.attributes().value("direction") == "out" ? out : in) += reader.attributes().value("type");
        }
        if (docs != arguments + 1)
            result.undocumented += name;
        if (isSignal)
            result.signalNames += name + ':' + in;
        else
            result.methods += name + ':' + in + ':' + out;
    }
    return result;
}

template <size_t N>
QStringList sorted(const char* const (&texts)[N]) {
    QStringList list;
    for (const char* text : texts)
        list += text;
    list.sort();
    return list;
}

QStringList sorted(QStringList list) {
    list.sort();
    return list;
}

QVariantList argumentsFor(const QString& signature, const QString& text) {
    QVariantList arguments;
    for (int i = 0; i < signature.size(); ++i) {
        if (signature[i] == 'a') {
            arguments += QStringList{text};
            ++i;
        } else if (signature[i] == 's') {
            arguments += text;
        } else if (signature[i] == 'b') {
            arguments += true;
        } else if (signature[i] == 'i') {
            arguments += 96;
        } else {
            arguments += qlonglong(0);
        }
    }
    return arguments;
}

}  // namespace

/// What needs no Wine: the contract, hostile callers, the service's life.
class tst_ServiceBus : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void contract();
    void everyMethodAnswers();
    void hostileArguments_data();
    void hostileArguments();
    void brokenSettingsAreReportedAndKept();
    void programsOfAHandMadeBottle();
    void publicBottles();
    void secondServiceOnTheSameDataGivesUp();
    void quitEndsAndStartsAnew();
    void busLossEndsTheService();

private:
    void makeBottle(const QString& name, const QByteArray& settings);
    QByteArray settingsOf(const QString& name);

    std::unique_ptr<ServiceFixture> m_service;
};

void tst_ServiceBus::initTestCase() {
    m_service = std::make_unique<ServiceFixture>();
    QVERIFY(m_service->start());
}

void tst_ServiceBus::makeBottle(const QString& name, const QByteArray& settings) {
    QVERIFY(QDir().mkpath(m_service->bottlePath(name)));
    QFile file(m_service->bottlePath(name) + "/bottle.yml");
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(settings);
}

QByteArray tst_ServiceBus::settingsOf(const QString& name) {
    QFile file(m_service->bottlePath(name) + "/bottle.yml");
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void tst_ServiceBus::contract() {
    const Interface live =
        parseInterface(m_service->introspect("/com/lumora/Manager/Bottles"), "com.lumora.Manager.Bottles");
    QCOMPARE(sorted(live.methods), sorted(Methods));
    QCOMPARE(sorted(live.signalNames), sorted(Signals));
    const Interface manager =
        parseInterface(m_service->introspect("/com/lumora/Manager"), "com.lumora.Manager");
    QCOMPARE(sorted(manager.methods), QStringList({"GetVersion::s", "Quit::"}));
    for (const char* name : {"com.lumora.Manager", "com.lumora.Manager.Bottles"}) {
        QFile file(QString(WIRE_DIR "/%1.xml").arg(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const Interface written = parseInterface(QString::fromUtf8(file.readAll()), name);
        QCOMPARE(written.methods, (name == QString("com.lumora.Manager") ? manager : live).methods);
        QCOMPARE(written.undocumented, QStringList());
    }
    QCOMPARE(m_service->callManager("GetVersion").arguments().value(0).toString(), QString("3.3.4.008"));
}

void tst_ServiceBus::everyMethodAnswers() {
    for (const char* text : Methods) {
        const QStringList parts = QString(text).split(':');
        if (parts[0].startsWith("list") && parts[1].isEmpty())
            continue;
        const QDBusMessage reply = m_service->call(parts[0], argumentsFor(parts[1], "no-such\nbottle"));
        QCOMPARE(reply.type(), QDBusMessage::ErrorMessage);
        QVERIFY2(reply.errorName().startsWith("com.lumora.Error."),
                 qPrintable(parts[0] + ' ' + reply.errorName()));
        QVERIFY(reply.errorMessage().endsWith('.'));
        const QDBusMessage wrong = m_service->call(parts[0], argumentsFor(parts[1] + 'i', "x"));
        QCOMPARE(wrong.errorName(), QString("com.lumora.Error.InvalidArgs"));
    }
    QCOMPARE(m_service->call("noSuchMethod").errorName(),
             QString("org.freedesktop.DBus.Error.UnknownMethod"));
}

void tst_ServiceBus::hostileArguments_data() {
    QTest::addColumn<QString>("bottle");
    QTest::newRow("up") << "../../x";
    QTest::newRow("absolute") << "/etc";
    QTest::newRow("control") << "a\tb";
    QTest::newRow("long") << QString(300, 'x');
    QTest::newRow("huge") << QString(5 * 1024 * 1024, 'x');
    QTest::newRow("reserved") << ".creating-x";
    QTest::newRow("link") << "linked";
    QTest::newRow("inside a bottle") << "real/drive_c";
}

void tst_ServiceBus::hostileArguments() {
    QFETCH(QString, bottle);
    makeBottle("real", "Runner: r\n");
    const QString outside = m_service->home() + "/outside";
    QVERIFY(QDir().mkpath(outside + "/drive_c"));
    QFile file(outside + "/bottle.yml");
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    QFile::link(outside, m_service->bottlePath("linked"));
    for (const QVariantList& call :
         {QVariantList{"get"}, QVariantList{"delete"}, QVariantList{"killWineServer"},
          QVariantList{"updateExternalProgram", "{\"id\":\"7b1b4b1e-0000-4000-8000-000000000001\"}"},
          QVariantList{"run_command", "cmd"}, QVariantList{"removeExternalProgram", "x"}}) {
        const QDBusMessage reply = m_service->call(call[0].toString(), QVariantList{bottle} + call.mid(1));
        QVERIFY2(reply.type() == QDBusMessage::ErrorMessage, qPrintable(call[0].toString()));
        QVERIFY(reply.errorMessage().size() < 600);
    }
    const QDBusMessage created = m_service->call("createBottles", {bottle, ""});
    if (created.type() != QDBusMessage::ErrorMessage)
        QVERIFY(created.arguments()[0].toString().startsWith("{\"error\":"));
    QCOMPARE(m_service->call("list").arguments()[0].toString(), QString("[\"real\"]"));
    QCOMPARE(QDir(outside).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList({"bottle.yml", "drive_c"}));
}

void tst_ServiceBus::brokenSettingsAreReportedAndKept() {
    const QByteArray broken = "Runner: {torn\n";
    makeBottle("broken", broken);
    QCOMPARE(m_service->call("get", {"broken"}).errorName(), QString("com.lumora.Error.Failed"));
    const QString record = "{\"id\":\"7b1b4b1e-0000-4000-8000-000000000001\",\"path\":\"C:\\\\a.exe\"}";
    QCOMPARE(m_service->call("updateExternalProgram", {"broken", record}).errorName(),
             QString("com.lumora.Error.Failed"));
    QCOMPARE(settingsOf("broken"), broken);
    QCOMPARE(m_service->call("listAllPrograms").arguments()[0].toString(), QString("[]"));
    QCOMPARE(m_service->call("delete", {"broken"}).type(), QDBusMessage::ReplyMessage);
    QVERIFY(!QFileInfo::exists(m_service->bottlePath("broken")));
}

void tst_ServiceBus::programsOfAHandMadeBottle() {
    // Comes after the signals that earlier calls caused.
    makeBottle("marker", "Runner: r\n");
    m_service->call("delete", {"marker"});
    QTRY_VERIFY(m_service->signalLog.contains("bottles_deleted(marker)"));
    m_service->signalLog.clear();
    const QString id = "7b1b4b1e-0000-4000-8000-000000000001";
    makeBottle("hand", "Own: [1, 2]\nRunner: lumora-wine10-stable\n");
    const auto update = [&](const QString& fields) {
        return m_service
            ->call("updateExternalProgram", {"hand", QString("{\"id\":\"%1\"%2}").arg(id, fields)})
            .errorMessage();
    };
    QVERIFY(update(",\"stars\":3").contains("needs a path"));
    QCOMPARE(update(R"(,"name":"n","path":"C:\\a.exe")"), QString());
    QCOMPARE(update(",\"stars\":3"), QString());
    QCOMPARE(update(",\"stars\":3"), QString());
    QTRY_COMPARE(m_service->signalLog.size(), 2);
    QVERIFY(m_service->signalLog[0].startsWith("program_added(hand, " + id + ", {"));
    QVERIFY(m_service->signalLog[1].startsWith("program_updated(hand, " + id + ", {"));
    QVERIFY(m_service->signalLog[1].contains("\"name\":\"n\""));
    QVERIFY(settingsOf("hand").startsWith("Own:"));

    // What could never be read again is refused, and the bottle stays as it was.
    QVERIFY(update(",\"x\":" + QString(80, '[') + QString(80, ']')).contains("nothing was changed"));
    QVERIFY(!m_service->call("get", {"hand"}).arguments().isEmpty());

    // A change leaves alone what it does not name; adopting a found program is one change.
    const QByteArray found = "    auto_discovered: true\n    ver: 1.10\n    id: ";
    makeBottle("hand", settingsOf("hand").replace("    id: ", found));
    m_service->signalLog.clear();
    QCOMPARE(update(",\"stars\":3"), QString());
    QCOMPARE(update(",\"stars\":3"), QString());
    QVERIFY(settingsOf("hand").contains("ver: 1.10\n"));
    QVERIFY(!settingsOf("hand").contains("auto_discovered"));
    m_service->call("removeExternalProgram", {"hand", "other"});
    QTRY_COMPARE(m_service->signalLog.size(), 1);

    const auto launchProgram = [&] {
        QFile data(m_service->bottlePath("hand") + "/launch.json");
        return data.open(QIODevice::ReadOnly)
                   ? QJsonDocument::fromJson(data.readAll()).object()["programs"].toObject()[id].toObject()
                   : QJsonObject();
    };
    QCOMPARE(launchProgram()["path"].toString(), QString("C:\\a.exe"));
    makeBottle("hand", settingsOf("hand").replace("C:\\\\a.exe", "C:\\\\edited.exe"));
    m_service->call("get", {"hand"});
    QCOMPARE(launchProgram()["path"].toString(), QString("C:\\edited.exe"));

    const QJsonArray summaries =
        QJsonDocument::fromJson(m_service->call("listAllPrograms").arguments()[0].toString().toUtf8())
            .array();
    QCOMPARE(summaries.size(), 1);
    QCOMPARE(summaries[0].toObject()["uuid"].toString(), id);
    QCOMPARE(summaries[0].toObject()["stars"].toInt(), 3);
    QCOMPARE(m_service->call("removeExternalProgram", {"hand", "other"}).errorName(),
             QString("com.lumora.Error.NoSuchProgram"));
    QJsonObject form{{"bottlesName", "hand"}, {"programUuid", id}, {"name", "N: #"}};
    const auto dump = [&] {
        return m_service->call("dumpManifest", {QString(QJsonDocument(form).toJson())})
            .arguments()[0]
            .toString();
    };
    QVERIFY(dump().contains("must be text"));
    for (const char* key :
         {"introduction", "downloadUrl", "packageSize", "contributor", "category", "contributorEmail"})
        form[key] = "t";
    QFile manifest(dump());
    QVERIFY(manifest.open(QIODevice::ReadOnly));
    const QByteArray recipe = manifest.readAll();
    QVERIFY2(recipe.contains("Name: \"N: #\"") && recipe.contains("edited.exe"), recipe.constData());

    m_service->call("removeExternalProgram", {"hand", id});
    QTRY_COMPARE(m_service->signalLog.size(), 2);
    QCOMPARE(m_service->signalLog[1], "program_deleted(hand, " + id + ')');
    QCOMPARE(m_service->call("listBottlesAllPrograms", {"hand"}).arguments()[0].toString(), QString("[]"));
}

void tst_ServiceBus::publicBottles() {
    const QString query = R"({"filename":"a.exe","md5sum":"abc","peinfo":{}})";
    QCOMPARE(m_service->call("checkPublicBottles", {query}).arguments()[0].toString(), QString());
    QFile table(m_service->dataDir() + "/public-bottles.json");
    QVERIFY(table.open(QIODevice::WriteOnly));
    table.write(R"([{"bottle":"public/office","md5sum":["abc"]}])");
    table.close();
    QCOMPARE(m_service->call("checkPublicBottles", {query}).arguments()[0].toString(),
             QString("public/office"));
    QCOMPARE(m_service->call("checkPublicBottles", {"[]"}).errorName(),
             QString("com.lumora.Error.InvalidArgs"));
}

void tst_ServiceBus::secondServiceOnTheSameDataGivesUp() {
    QProcess second;
    m_service->startSecond(second);
    QVERIFY(second.waitForFinished(30000));
    QCOMPARE(second.exitCode(), 1);
    QVERIFY(m_service->log().contains("in use by a service of another session"));
}

void tst_ServiceBus::quitEndsAndStartsAnew() {
    QCOMPARE(m_service->callManager("Quit").type(), QDBusMessage::ReplyMessage);
    QVERIFY(m_service->process().waitForFinished());
    QCOMPARE(m_service->process().exitCode(), 0);
    for (const char* name : {".creating-left", "public/.deleting-left"})
        QVERIFY(QDir().mkpath(m_service->bottlePath(name) + "/drive_c"));
    QVERIFY(m_service->start());
    QTRY_VERIFY(!QFileInfo::exists(m_service->bottlePath(".creating-left")));
    QTRY_VERIFY(!QFileInfo::exists(m_service->bottlePath("public/.deleting-left")));
    QVERIFY(m_service->log().contains("an earlier run of the service was interrupted"));
}

void tst_ServiceBus::busLossEndsTheService() {
    m_service->stopBus();
    QVERIFY(m_service->process().waitForFinished(10000));
    m_service.reset();
}

QTEST_GUILESS_MAIN(tst_ServiceBus)
#include "tst_servicebus.moc"
