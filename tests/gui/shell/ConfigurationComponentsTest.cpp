#include <QAbstractButton>
#include <QProgressBar>

#include "ConfigurationFixture.h"
#include "fenk/controls/FloatingMessage.h"
#include "launch/LaunchWindows.h"
#include "shell/configuration/page/BottleSettings.h"
#include "support/EnvironmentGuard.h"

/// The change of a component in the window, from the choice to its end, whatever comes between.
class ConfigurationComponentsTest : public ConfigurationFixture {
    Q_OBJECT

private Q_SLOTS:
    void componentIsSetUp() {
        setBottle({"a"});
        open();
        chooseDxvk();
        QCOMPARE(m_service->waitForCall("setD3dRenderer").arguments, QJsonArray({"office", "vulkan"}));
        QCOMPARE(dxvk()->currentIndex(), 0);
        QVERIFY(tell("component_waiting_downloaded", "dxvk-1") &&
                tell("component_waiting_downloaded", "dxvk-2", "dxvk", "home") &&
                tell("component_waiting_downloaded", "dxvk-2"));
        QTRY_COMPARE(tips(), QString("Waiting for download dxvk-2"));
        QCOMPARE(dxvk()->currentIndex(), 1);
        QVERIFY(m_service->emitSignal("/com/lumora/Manager/Components", "com.lumora.Manager.Components",
                                      "updateProgress", "ssuus", {"dxvk", "dxvk-2", 30, 60, ""}));
        QTRY_COMPARE(dxvk()->findChild<QProgressBar*>()->value(), 50);
        QVERIFY(tell("component_setup_start", "dxvk-2"));
        QTRY_COMPARE(dxvk()->currentIndex(), 2);
        QVERIFY(tellDone("dxvk-2", "{\"ok\": true}") && tellDone("dxvk-2", "{\"ok\": true}"));
        QTRY_COMPARE(dxvk()->currentIndex(), 0);
        QCOMPARE(dxvk()->combo()->currentText(), QString("dxvk-2"));
        QVERIFY(find<QAbstractButton>("undo_btn")->isVisible());
    }

    void componentFails() {
        setBottle({"a"});
        open();
        chooseDxvk();
        QVERIFY(tellDone("dxvk-2", "{\"ok\": false, \"error\": \"no network\"}"));
        QTRY_COMPARE(tips(), QString("Setup failed: dxvk-2"));
        QCOMPARE(dxvk()->combo()->currentText(), QString("Disabled"));
        m_service->waitForCall("setD3dRenderer", 2);  // nothing that draws with Vulkan has come
        QCOMPARE(m_service->calls("setD3dRenderer").last().arguments, QJsonArray({"office", "gl"}));
        QCOMPARE(find<QComboBox>("d3drenderer_combobox")->currentText(), QString("opengl"));
        dxvk()->findChild<QAbstractButton*>("tips_closebtn")->click();
        QCOMPARE(m_service->waitForCall("cancelInstallingComponent").arguments,
                 QJsonArray({"office", "dxvk", "dxvk-2"}));
        QCOMPARE(dxvk()->currentIndex(), 0);
    }

    void userCancels_data() {
        const Table<QString, QString> row("signal", "button");
        row("while it waits", "component_waiting_downloaded", "tips_closebtn");
        row("while it is set up", "component_setup_start", "setup_closebtn");
    }
    void userCancels() {
        QFETCH(QString, signal);
        QFETCH(QString, button);
        setBottle({"a"}, {{"DXVK", "dxvk-1"}, {"Parameters", QJsonObject{{"renderer", "vulkan"}}}});
        open();
        chooseDxvk();
        QVERIFY(tell(signal, "dxvk-2"));
        auto* close = dxvk()->findChild<QAbstractButton*>(button);
        QTRY_VERIFY(close->isVisible());
        close->setFocus();
        QTest::keyClick(close, Qt::Key_Space);
        QCOMPARE(m_service->waitForCall("cancelInstallingComponent").arguments,
                 QJsonArray({"office", "dxvk", "dxvk-2"}));
        QVERIFY(tellDone("dxvk-2", "{\"ok\": false}") && tell("component_setup_start", "dxvk-2"));
        QVERIFY(tellDone("dxvk-2", "{\"ok\": true}"));  // it was done already: what the bottle has is shown
        QTRY_COMPARE(dxvk()->combo()->currentText(), QString("dxvk-2"));
        QCOMPARE(dxvk()->currentIndex(), 0);
        QVERIFY(dxvk()->combo()->hasFocus());
    }

    void callFails() {
        m_service->setError("Bottles.setDxvk", "out of order");
        m_service->setError("Bottles.setCpuRendering", "out of order");
        setBottle({"a"});
        open();
        chooseDxvk();
        QTRY_COMPARE(tips(), QString("Setup failed: dxvk-2"));
        auto* gpu = find<QAbstractButton>("software_render_switch_btn");
        find<QComboBox>("d3drenderer_combobox")->setCurrentIndex(0);
        gpu->click();
        QTRY_VERIFY(m_view->findChild<Fenk::FloatingMessage*>());
        QTRY_VERIFY(!gpu->isChecked());
    }

    /// The end of the work counts, whenever the call itself is answered, and only one end.
    void answersComeLate() {
        m_service->setHeld("Bottles.setDxvk", "");
        setBottle({"a"}, {{"DXVK", "dxvk-1"}});
        open();
        chooseDxvk();
        QVERIFY(tellDone("dxvk-2", "{\"ok\": true}") && tellDone("dxvk-2", "{\"ok\": false}") &&
                tellDone("dxvk-1", "nonsense"));
        QTRY_VERIFY(find("undo_btn")->isVisible());
        QCOMPARE(m_service->release("setDxvk"), 1);
        // Somebody else's change is shown; another bottle's is not.
        QVERIFY(m_service->emitSignal("component_setup_done", "ssss",
                                      {"home", "dxvk", "dxvk-7", "{\"ok\": true}"}) &&
                tellDone("dxvk-1", "{\"ok\": true}"));
        QTRY_COMPARE(dxvk()->combo()->currentText(), QString("dxvk-1"));
        QCOMPARE(dxvk()->currentIndex(), 0);
    }

    /// A renderer that has no use for a layer takes it along, also one that is still being fetched, and undo
    /// brings it back.
    void rendererEndsLayers() {
        setBottle({"a"}, {{"DXVK", "dxvk-1"}, {"Parameters", QJsonObject{{"renderer", "vulkan"}}}});
        open();
        chooseDxvk();
        find<QComboBox>("d3drenderer_combobox")->setCurrentIndex(1);
        QCOMPARE(m_service->waitForCall("cancelInstallingComponent").arguments,
                 QJsonArray({"office", "dxvk", "dxvk-2"}));
        QCOMPARE(dxvk()->combo()->currentText(), QString("Disabled"));
        find<QAbstractButton>("undo_btn")->click();
        m_service->waitForCall("setDxvk", 2);
        QCOMPARE(m_service->calls("setDxvk").last().arguments, QJsonArray({"office", "dxvk-1", true}));
        QCOMPARE(m_service->calls("setD3dRenderer").last().arguments, QJsonArray({"office", "vulkan"}));
    }

    /// The renderer from before comes back with the end of the last layer.
    void twoLayersFail() {
        setBottle({"a"});
        open();
        auto* settings = m_view->findChild<BottleSettings*>();
        settings->choose(Setting::Vkd3d, "vkd3d-1");
        chooseDxvk();
        m_service->waitForCall("setVkD3D");
        QVERIFY(tellDone("dxvk-2", "{\"ok\": false}"));
        QTRY_COMPARE(tips(), QString("Setup failed: dxvk-2"));
        QCOMPARE(settings->values().text(Setting::Renderer), QString("vulkan"));
        settings->cancelSetup(Setting::Vkd3d);
        QCOMPARE(m_service->waitForCall("setD3dRenderer", 2).arguments, QJsonArray({"office", "gl"}));
    }

    /// Of a choice that is refused the record is read again; what is chosen meanwhile is sent then.
    void choicesWhileReading() {
        m_service->setError("Bottles.setCpuRendering", "out of order");
        setBottle({"a"});
        open();
        m_service->setHeld("Bottles.get:office", R"({"Path": "/b", "Runner": "ge-proton9"})");
        auto* settings = m_view->findChild<BottleSettings*>();
        QSignalSpy runners(settings, &BottleSettings::runnerChanged);
        find<QAbstractButton>("software_render_switch_btn")->click();
        m_service->waitForCall("get", 2);
        find<QComboBox>("window_version_combobox")->setCurrentIndex(3);
        QCOMPARE(settings->state(), BottleSettings::State::Loading);
        m_service->release();
        QCOMPARE(m_service->waitForCall("setWindowsVersion").arguments, QJsonArray({"office", "win7"}));
        QCOMPARE(find<QComboBox>("window_version_combobox")->currentText(), QString("Windows 7"));
        QCOMPARE(runners.count(), 1);
    }

    void programsRunning_data() {
        const Table<int, bool, bool, int, int> row("answer", "isFetched", "isClosed", "kills", "calls");
        row("close them", 1, false, false, 1, 2);
        row("close them, window closed", 1, false, true, 1, 2);
        row("cancel", 0, false, false, 0, 1);
        row("close them, after the download", 1, true, false, 1, 2);
        row("cancel, after the download", 0, true, false, 0, 1);
    }
    void programsRunning() {
        QFETCH(int, answer);
        QFETCH(bool, isClosed);
        setBottle({"a"});
        open();
        chooseDxvk();
        m_service->setHeld("killWineServer", "");
        QFETCH(bool, isFetched);
        QVERIFY(!isFetched || tell("component_waiting_downloaded", "dxvk-2"));
        const QString busy = "{\"ok\": false, \"busy\": [\"notepad.exe\"]}";
        QVERIFY(tellDone("dxvk-2", busy) && tellDone("dxvk-2", busy));
        QTRY_VERIFY(QApplication::activeModalWidget());
        QCOMPARE(dxvk()->currentIndex(), 0);
        qobject_cast<Fenk::Dialog*>(QApplication::activeModalWidget())->button(answer)->click();
        m_service->waitForCall(answer ? "killWineServer" : "cancelInstallingComponent");
        if (isClosed)
            delete m_view;
        QCOMPARE(m_service->release(), answer);
        if (answer)
            QCOMPARE(m_service->waitForCall("setDxvk", 2).arguments, QJsonArray({"office", "dxvk-2", true}));
        QFETCH(int, kills);
        QTEST(m_service->calls("setDxvk").size(), "calls");
        QCOMPARE(m_service->calls("killWineServer").size(), kills);
        if (m_view)
            QCOMPARE(dxvk()->combo()->currentText(), answer ? QString("dxvk-2") : QString("Disabled"));
    }

    void serviceIsLost_data() {
        const Table<QStringList> row("signals");
        row("asked", {});
        row("waiting", {"component_waiting_downloaded"});
        row("being set up", {"component_waiting_downloaded", "component_setup_start"});
        row("failed", {"component_setup_done"});
    }
    void serviceIsLost() {
        QFETCH(QStringList, signals);
        setBottle({"a"});
        open();
        chooseDxvk();
        for (const QString& signal : signals)
            QVERIFY(signal.endsWith("done") ? tellDone("dxvk-2", "{}") : tell(signal, "dxvk-2"));
        QTRY_COMPARE(dxvk()->currentIndex(), signals.size() == 1 ? 1 : signals.size());
        m_service->kill();
        auto* failed = find("failed_view");
        QTRY_VERIFY(failed->isVisible());
        startService();
        setBottle({"a", "b"});
        QTRY_VERIFY(!failed->isVisible());
        QTRY_COMPARE(entries().size(), 2);
        QCOMPARE(tips(), QString("Setup failed: dxvk-2"));
    }

    void componentCanBeUndone() {
        setBottle({"a"});
        open();
        chooseDxvk();
        find<QComboBox>("window_version_combobox")->setCurrentIndex(3);
        QVERIFY(tellDone("dxvk-2", "{\"ok\": true}"));
        QTRY_COMPARE(find<QLabel>("undo_label")->text(), QString("dxvk has been changed"));
        find<QAbstractButton>("undo_btn")->click();
        m_service->waitForCall("setDxvk", 2);
        QCOMPARE(m_service->calls("setDxvk").last().arguments, QJsonArray({"office", "-", true}));
        m_service->waitForCall("setD3dRenderer", 2);
        QCOMPARE(m_service->calls("setD3dRenderer").last().arguments, QJsonArray({"office", "gl"}));
        QVERIFY(!find("undo_btn")->isVisible());
        QCOMPARE(find<QComboBox>("window_version_combobox")->currentText(), QString("Windows 7"));
    }

    void installingBefore_data() {
        const Table<QString, int, QString> row("state", "page", "text");
        row("fetched", "DOWNLOADING", 1, "Waiting for download ge-proton9");
        row("set up", "SETUPING", 2, "Setuping ge-proton9");
    }
    void installingBefore() {
        QFETCH(QString, state);
        QFETCH(int, page);
        QFETCH(QString, text);
        m_service->setJson("getInstallingComponents", QJsonObject{{"ge-proton9", state}});
        setBottle({"a"});
        open();
        auto* wine = find<ComponentsSwitcherWidget>("wine_version_combobox");
        QTRY_COMPARE(wine->currentIndex(), page);
        QCOMPARE(wine->findChild<QLabel*>(page == 1 ? "tips_label" : "setup_label")->text(), text);
        QVERIFY(m_service->emitSignal("component_setup_done", "ssss",
                                      {"office", "runner", "ge-proton9", "{\"ok\": true}"}));
        QTRY_COMPARE(wine->currentIndex(), 0);
        QVERIFY(!find("mem_optimized_switch_btn")->isEnabled());
    }

    /// Of several choices only the last one counts, and none that was taken back.
    void protonIsMadeReady() {
        QVector<std::function<void()>> ready;
        LaunchWindows::instance().prepareProton = [&](QObject*, const std::function<void()>& then) {
            ready += then;
        };
        setBottle({"a"});
        open();
        auto* wine = find<ComponentsSwitcherWidget>("wine_version_combobox");
        for (int i = 1; i <= 3; ++i) {
            activate(wine->combo(), wine->combo()->findData("ge-proton9"));
            QCOMPARE(ready.size(), i);
            QCOMPARE(wine->currentIndex(), 2);
            QCOMPARE(wine->findChild<QLabel*>("setup_label")->text(), QString("Preparing ge-proton9"));
            if (i == 1)
                wine->findChild<QAbstractButton*>("setup_closebtn")->click();
        }
        ready[0]();
        ready[1]();
        QCOMPARE(wine->currentIndex(), 2);
        QVERIFY(m_service->calls("setRunner").isEmpty());
        ready[2]();
        QCOMPARE(m_service->waitForCall("setRunner").arguments, QJsonArray({"office", "ge-proton9", true}));
        LaunchWindows::instance().prepareProton = {};
    }

    /// Told once, however often a Proton is chosen.
    void driverIsMissing() {
        TestSupport::EnvironmentGuard environment;
        for (const auto& [name, script] : {std::pair{"file", "echo PE32 executable"},
                                           {"apt", "echo libvulkan1"},
                                           {"lspci", "echo '00:01.0 VGA compatible controller: A card'"},
                                           {"dpkg", "exit 1"}})
            QFile::setPermissions(m_home.write(QString("bin/") + name, QByteArray("#!/bin/sh\n") + script),
                                  QFile::ReadOwner | QFile::ExeOwner);
        environment.set("PATH", QFile::encodeName(m_home.path() + "/bin:") + qgetenv("PATH"));
        setBottle({"a"});
        open();
        auto* wine = find<ComponentsSwitcherWidget>("wine_version_combobox");
        for (const char* version : {"ge-proton9", "wine", "ge-proton9"})
            activate(wine->combo(), wine->combo()->findData(version));
        QTRY_VERIFY(find("driver_warning"));
        auto* warning = find<Fenk::Dialog>("driver_warning");
        QVERIFY(warning->isModal() && warning->title().endsWith("install the corresponding driver."));
        QCOMPARE(warning->size(), QSize(514, 550));
        QCOMPARE(TestSupport::outOfReach(warning), QString());
        TestSupport::press(warning, Qt::Key_Escape);
        QTRY_VERIFY(!find("driver_warning"));
    }
};

int main(int argc, char** argv) {
    const TestSupport::PrivateBus bus;  // before the application, which connects to it
    Fenk::Application app(argc, argv);
    ConfigurationComponentsTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "ConfigurationComponentsTest.moc"
