#include "store/install/YamlProgramInstallerSession.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QSignalSpy>
#include <QtTest>

#include "backend/InstallerManager.h"
#include "core/base/SettingsStore.h"
#include "programs/AppItemWidgetStateManager.h"
#include "store/install/FileSelectWidget.h"
#include "store/install/SetupAppInfoDialog.h"
#include "store/install/YamlProgramInstaller.h"
#include "store/install/YamlProgramInstallerBanner.h"
#include "support/FakeBottleService.h"
#include "support/FakePackages.h"
#include "support/HttpServer.h"
#include "support/LogCapture.h"
#include "support/PrivateBus.h"
#include "support/Table.h"
#include "support/TestHome.h"

using namespace TestSupport;

namespace {

const char Query[] = "appInfo?appId=7&appInfoId=k7";
const char Record[] =
    R"({"appId":7,"appInfoId":"k7","appName":"Seven","iconSaveKey":"","packageSize":1,"packageVersion":"1",)"
    R"("briefInfo":"","descInfo":"","score":0,"recommend":0,"devName":"","devEmail":"","officialSite":"",)"
    R"("downloadUrl":""})";
const char Network[] = "Failed to fetch setup manifest, please check your network";
const char Unknown[] = "Failed to fetch setup manifest, the application does not exist";
const char Good[] = "Name: Seven\nDebInfo: {wine_cmd: lumora-wine10-stable}\n";

QByteArray answer(int code, const QByteArray& record) {
    return "{\"code\":" + QByteArray::number(code) + ",\"data\":{\"AppInfo\":" + record + "}}";
}

template <class Window>
Window* shown() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* window = qobject_cast<Window*>(widget);
        if (window && window->isVisible())
            return window;
    }
    return nullptr;
}

}  // namespace

/// From an application's id to the set-up dialog and to the installer, against a real web server.
class YamlSessionTest : public QObject {
    Q_OBJECT

    TestHome m_home;
    const FakePackages m_packages{m_home, "no-package", "no-package"};
    PrivateBus m_bus;
    FakeBottleService m_service;
    std::unique_ptr<HttpServer> m_server;
    QPointer<YamlProgramInstallerSession> m_session;
    QStringList m_errors;
    int m_ends = 0;

    void start(YamlProgramInstallerSession* session) {
        m_session = session;
        m_errors.clear();
        m_ends = 0;
        connect(session, &YamlProgramInstallerSession::signalError, this,
                [this](const QString& text) { m_errors << text; });
        connect(session, &YamlProgramInstallerSession::signalDone, this, [this] { ++m_ends; });
        session->start();
    }

    static bool isSettingUp() { return AppItemWidgetStateManager::instance()->isSettingUp("7"); }

private Q_SLOTS:
    void initTestCase() {
        QVERIFY(m_service.start());
        m_service.setJson(
            "Components.list",
            QJsonObject{{"runner", QJsonObject{{"installed", QJsonArray{"lumora-wine10-stable"}},
                                               {"supported", QJsonArray()}}}});
    }
    void init() {
        m_server = std::make_unique<HttpServer>();
        m_server->files = {{Query, answer(200, Record)}, {"k7", Good}};
        settingsStore()->setOption("client.base_url.", m_server->address({}).chopped(1));
        m_service.setJson("Bottles.get:program-7", QJsonObject());
        m_service.clearCalls();
    }
    void cleanup() {
        delete m_session;
        QVERIFY(!isSettingUp() || m_ends == 0);
        if (isSettingUp())
            AppItemWidgetStateManager::instance()->onSetupingYmlDone("7", {}, false);
    }

    void fails_data() {
        const Table<QByteArray, QByteArray, QString, bool> row("record", "manifest", "error", "hasRecord");
        row("unknown", answer(4000, Record), Good, Unknown, false);
        row("another code", answer(500, Record), Good, Network, false);
        row("no record", "{}", Good, Network, false);
        row("no JSON", "<html>", Good, Network, false);
        row("a record that lacks something", answer(200, R"({"appId":7,"appName":"Seven"})"), Good, Network,
            false);
        row("no answer", {}, Good, Network, false);
        row("no manifest", answer(200, Record), {}, Network, true);
        row("an error for a manifest", answer(200, Record), R"({"code":404,"msg":"gone"})", Network, true);
        row("no YAML", answer(200, Record), "Name: {", Network, true);
        row("without DebInfo", answer(200, Record), "Name: Seven", Network, true);
        row("installed", answer(200, Record), "installed", "Seven has been installed", true);
    }
    void fails() {
        QFETCH(QByteArray, record);
        QFETCH(QByteArray, manifest);
        QFETCH(bool, hasRecord);
        m_server->files = {{Query, record}, {"k7", manifest}};
        for (const char* name : {Query, "k7"}) {
            if (m_server->files[name].isEmpty())
                m_server->files.remove(name);
        }
        if (manifest == "installed")
            m_service.setBottle("program-7", {{"External_Programs", QJsonObject{{"u", QJsonObject()}}}});
        // A record that is known is not asked for.
        for (const bool isKnown : {false, true}) {
            if (isKnown && !hasRecord)
                continue;
            m_server->requests.clear();
            if (isKnown)
                start(new YamlProgramInstallerSession(OpenAPI::VeskClientAppInfo(QString(Record))));
            else
                start(new YamlProgramInstallerSession("7", "k7"));
            QTRY_COMPARE(m_ends, 1);
            QFETCH(QString, error);
            QCOMPARE(m_errors, QStringList(error));
            QVERIFY(!shown<SetupAppInfoDialog>() && !isSettingUp());
            QCOMPARE(m_server->requests.filter("appInfo").size(), isKnown ? 0 : 1);
            QCOMPARE(m_server->requests.filter("downloadYml").isEmpty(),
                     manifest == "installed" || !hasRecord);
            QTRY_VERIFY(!m_session);
            QCOMPARE(m_ends, 1);
        }
    }

    void dialogEnds_data() {
        QTest::addColumn<bool>("isTold");
        for (const char* way : {"escape", "cancel", "the file has gone", "its window is destroyed"})
            QTest::newRow(way) << true;
        QTest::newRow("the session is destroyed") << false;
    }
    void dialogEnds() {
        const QString way = QTest::currentDataTag();
        auto parent = std::make_unique<QWidget>();
        parent->show();
        parent->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(parent.get()));
        QSignalSpy setups(AppItemWidgetStateManager::instance(),
                          &AppItemWidgetStateManager::signalAppSetuping);
        start(new YamlProgramInstallerSession("7", "k7"));
        QTRY_VERIFY(shown<SetupAppInfoDialog>());
        SetupAppInfoDialog* dialog = shown<SetupAppInfoDialog>();
        QCOMPARE(dialog->parentWidget(), parent.get());
        QVERIFY(dialog->isModal() && isSettingUp());
        QCOMPARE(setups.size(), 1);
        if (way == "escape") {
            QTest::keyClick(dialog, Qt::Key_Escape);
        } else if (way == "cancel") {
            dialog->button(0)->click();
        } else if (way == "the file has gone") {
            const QString file = m_home.write("gone.exe", "MZ");
            dialog->findChild<FileSelectWidget*>()->setFile(file);
            QFile::remove(file);
            dialog->done(1);
        } else if (way == "its window is destroyed") {
            parent.reset();
        } else {
            delete m_session;
            QVERIFY(!shown<SetupAppInfoDialog>() && !isSettingUp());
            return;
        }
        QTRY_COMPARE(m_ends, 1);
        QCOMPARE(m_errors, QStringList());
        QVERIFY(!isSettingUp() && m_service.calls("setupYaml").isEmpty());
        QTRY_VERIFY(!m_session);
    }

    /// Its bottle is named after its content, and refused when it is there already.
    void manifestOfTheUser() {
        const QString bottle =
            "program-" + QCryptographicHash::hash(Good, QCryptographicHash::Sha256).toHex().left(16);
        start(YamlProgramInstallerSession::ofManifest(Good));
        QTRY_VERIFY(shown<SetupAppInfoDialog>());
        SetupAppInfoDialog* dialog = shown<SetupAppInfoDialog>();
        dialog->findChild<FileSelectWidget*>()->setFile(m_home.write("setup.exe", "MZ"));
        QTRY_VERIFY(dialog->button(1)->isEnabled());
        dialog->button(1)->click();
        QCOMPARE(m_service.waitForCall("setupYaml").arguments.at(0).toString(), bottle);
        QCOMPARE(shown<YamlProgramInstallerBanner>()->windowTitle(), QString("Seven"));
        delete m_session;
        m_service.setBottle(bottle, {{"External_Programs", QJsonObject{{"u", QJsonObject()}}}});
        for (const auto& [yaml, error] :
             {std::pair(Good, "Seven has been installed"), {"[", "The manifest cannot be read."}}) {
            start(YamlProgramInstallerSession::ofManifest(yaml));
            QTRY_COMPARE(m_errors, QStringList(error));
        }
    }

    /// With a file the installer begins, and the session ends with it.
    void handsOver() {
        LogCapture log;
        m_server->files["icon"] =
            readFile(TEST_SOURCE_DIR "/src/frontend/resources/images/search_history.png");
        const QString record = QString(Record).replace(
            "\"iconSaveKey\":\"\"", "\"iconSaveKey\":\"" + m_server->address("icon") + '"');
        const QString file = m_home.write("Setup One.exe", "MZ");
        start(new YamlProgramInstallerSession(OpenAPI::VeskClientAppInfo(record)));
        QTRY_VERIFY(shown<SetupAppInfoDialog>());
        SetupAppInfoDialog* dialog = shown<SetupAppInfoDialog>();
        dialog->findChild<FileSelectWidget*>()->setFile(file);
        QTRY_VERIFY(dialog->button(1)->isEnabled());
        dialog->button(1)->click();
        const RecordedCall call = m_service.waitForCall("setupYaml");
        QCOMPARE(call.path + ' ' + call.interface,
                 "/com/lumora/Manager/InstallerManager com.lumora.Manager.InstallerManager");
        QCOMPARE(call.arguments, QJsonArray({"program-7", QString::fromLatin1(QByteArray(Good).toBase64())}));
        auto* banner = shown<YamlProgramInstallerBanner>();
        QVERIFY(banner && !shown<SetupAppInfoDialog>());
        QCOMPARE(banner->windowTitle(), QString("Seven"));
        QTRY_VERIFY(!banner->windowIcon().isNull() && m_server->requests.contains("icon@0"));
        QVERIFY(log.contains("start install app:  7 Seven " + file) && log.contains("start install ...  7"));
        QCOMPARE(m_ends, 0);
        // One that fails meanwhile leaves the application registered.
        m_server->files.remove("k7");
        auto* second = new YamlProgramInstallerSession("7", "k7", this);
        QSignalSpy failed(second, &YamlProgramInstallerSession::signalError);
        second->start();
        QTRY_COMPARE(failed.size(), 1);
        QVERIFY(isSettingUp());
        Q_EMIT banner->stopRunning();
        QTRY_COMPARE(m_ends, 1);
        QCOMPARE(m_service.waitForCall("cancelSetup").arguments, QJsonArray({"program-7"}));
        QTRY_VERIFY(!m_session && !isSettingUp());
    }
};

QTEST_MAIN(YamlSessionTest)
#include "YamlSessionTest.moc"
