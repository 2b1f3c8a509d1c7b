#include <QAbstractButton>
#include <QAccessible>
#include <QComboBox>
#include <QDropEvent>
#include <QJsonDocument>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPointer>
#include <QProgressBar>
#include <QSpinBox>
#include <QStandardItemModel>
#include <QWheelEvent>

#include "fenk/controls/FloatingMessage.h"
#include "fenk/style/Theme.h"
#include "fenk/window/Application.h"
#include "fenk/window/Dialog.h"
#include "launch/LaunchWindows.h"
#include "shell/configuration/page/AppEntryButton.h"
#include "shell/configuration/page/BottlesConfigView.h"
#include "shell/configuration/page/ComponentsSwitcherWidget.h"
#include "shell/configuration/page/LaunchedConfigWindow.h"
#include "shell/configuration/tables/BottleTable.h"
#include "support/EnvironmentGuard.h"
#include "support/FakeBottleService.h"
#include "support/KeyWalk.h"
#include "support/PrivateBus.h"
#include "support/Table.h"
#include "support/TestHome.h"

using TestSupport::RecordedCall;
using TestSupport::Table;

/// The configuration window of the bottle "office" over a fake service.
class ConfigurationWindowTest : public QObject {
    Q_OBJECT

    TestSupport::TestHome m_home;
    std::unique_ptr<TestSupport::FakeBottleService> m_service;
    QPointer<BottlesConfigView> m_view;

    void startService() {
        m_service = std::make_unique<TestSupport::FakeBottleService>();
        QVERIFY(m_service->start(true));
        m_service->setJson(
            "Components.list",
            QJsonObject{{"runner", QJsonObject{{"installed", QJsonArray{"wine", "ge-proton9"}}}},
                        {"dxvk", QJsonObject{{"supported", QJsonArray{"dxvk-1", "dxvk-2"}}}}});
        QVERIFY(m_service->takeName());
    }
    void setBottle(const QStringList& programs, QJsonObject record = {}) {
        QJsonObject entries;
        for (const QString& id : programs)
            entries.insert(id, QJsonObject{{"name", "Program " + id}, {"path", "C:\\" + id + ".exe"}});
        record.insert("Path", m_home.path());
        record.insert("External_Programs", entries);
        for (const auto& [key, value] : {std::pair{"Runner", "wine"}, {"Windows", "win10"}}) {
            if (!record.contains(key))
                record.insert(key, value);
        }
        if (!record.contains("Parameters"))
            record.insert("Parameters", QJsonObject{{"custom_dpi", 96}, {"renderer", "gl"}});
        m_service->setBottle("office", record);
    }
    void open() {
        m_view = new BottlesConfigView;
        QSignalSpy loaded(m_view, &BottlesConfigView::bottlesLoaded);
        m_view->loadBottle("office");
        m_view->show();
        QVERIFY(QTest::qWaitForWindowActive(m_view));
        QTRY_COMPARE(loaded.count(), 1);
    }
    template <class Widget = QWidget>
    Widget* find(const QString& name) const {
        return m_view->findChild<Widget*>(name);
    }
    ComponentsSwitcherWidget* dxvk() const {
        return find<ComponentsSwitcherWidget>("dxvk_versions_combobox");
    }
    void activate(QComboBox* combo, int index) {
        combo->setCurrentIndex(index);
        Q_EMIT combo->activated(index);
    }
    bool tell(const QString& signal, const QString& name, const QString& kind = "dxvk",
              const QString& bottle = "office") {
        return m_service->emitSignal(signal, "sss", {bottle, kind, name});
    }
    bool tellDone(const QString& name, const QString& result) {
        return m_service->emitSignal("component_setup_done", "ssss", {"office", "dxvk", name, result});
    }
    QString tips() const { return dxvk()->findChild<QLabel*>("tips_label")->text(); }
    QStringList settingCalls() {
        QStringList methods;
        for (const RecordedCall& call : m_service->calls()) {
            if (call.method.startsWith("set"))
                methods << call.method;
        }
        return methods;
    }
    QVector<AppEntryButton*> entries() const { return m_view->findChildren<AppEntryButton*>().toVector(); }
    void chooseDxvk() {
        activate(dxvk()->combo(), 2);
        QCOMPARE(m_service->waitForCall("setDxvk").arguments, QJsonArray({"office", "dxvk-2", true}));
    }

private Q_SLOTS:
    void init() {
        Fenk::Theme::instance()->setAnimationsEnabled(false);
        startService();
    }
    void cleanup() {
        delete m_view;
        m_service.reset();
    }

    void loadingNeverWrites() {
        setBottle({"a"}, {{"Windows", "winxp64"},
                          {"DXVK", "dxvk-1"},
                          {"Parameters", QJsonObject{{"custom_dpi", 0},
                                                     {"renderer", "vulkan"},
                                                     {"discrete_gpu", true},
                                                     {"mem_optimized", true}}}});
        open();
        QCOMPARE(find<QComboBox>("window_version_combobox")->currentText(), QString("Windows XP"));
        QCOMPARE(find<QComboBox>("d3drenderer_combobox")->currentText(), QString("vulkan"));
        QCOMPARE(find<QSpinBox>("dpi_spinbox")->value(), 96);
        QVERIFY(find<QAbstractButton>("discrete_gpu_switch_btn")->isChecked());
        QVERIFY(!find("software_render_switch_btn")->isEnabled());
        QVERIFY(!find("ntsync_switch_btn")->isEnabled());
        QCOMPARE(dxvk()->combo()->currentText(), QString("dxvk-1"));
        // Its text may be that the machine's graphics cannot do it.
        QCOMPARE(find<ComponentsSwitcherWidget>("vkd3d_versions_combobox")->combo()->currentData(),
                 QVariant(QString()));
        m_service->waitForCall("getInstallingComponents");
        QCOMPARE(settingCalls(), QStringList());
    }

    void changesAreSent() {
        setBottle({"a"});
        open();
        const auto sent = [this](const QString& method) { return m_service->waitForCall(method).arguments; };
        find<QAbstractButton>("software_render_switch_btn")->click();
        QCOMPARE(sent("setCpuRendering"), QJsonArray({"office", true}));
        find<QComboBox>("window_version_combobox")->setCurrentIndex(3);
        QCOMPARE(sent("setWindowsVersion"), QJsonArray({"office", "win7"}));
        find<QComboBox>("d3drenderer_combobox")->setCurrentIndex(1);
        QCOMPARE(sent("setD3dRenderer"), QJsonArray({"office", "gdi"}));
        QVERIFY(!find("software_render_switch_btn")->isEnabled());
        for (int i = 0; i < 5; ++i)
            find<QSpinBox>("dpi_spinbox")->stepUp();
        QCOMPARE(sent("setDPI"), QJsonArray({"office", 246}));
        // Undo takes back the last one, and reset goes to the usual value.
        find<QAbstractButton>("undo_btn")->click();
        m_service->waitForCall("setDPI", 2);
        QCOMPARE(sent("setDPI"), QJsonArray({"office", 96}));
        auto* row = find("window_version_combobox")->parentWidget();
        row->findChild<QAbstractButton*>("reset_btn")->click();
        QTRY_COMPARE(m_service->calls("setWindowsVersion").size(), 2);
        QCOMPARE(m_service->calls("setWindowsVersion").last().arguments, QJsonArray({"office", "win10"}));
        // What is held back is sent when the window closes.
        find<QSpinBox>("dpi_spinbox")->stepUp();
        m_view->close();
        m_service->waitForCall("setDPI", 3);
        QTRY_VERIFY(!m_view);
    }

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

    void programsRunning_data() {
        const Table<int, int, int> row("answer", "kills", "calls");
        row("close them", 1, 1, 2);
        row("cancel", 0, 0, 1);
    }
    void programsRunning() {
        QFETCH(int, answer);
        setBottle({"a"});
        open();
        chooseDxvk();
        QVERIFY(tellDone("dxvk-2", "{\"ok\": false, \"busy\": [\"notepad.exe\"]}"));
        QTRY_VERIFY(QApplication::activeModalWidget());
        qobject_cast<Fenk::Dialog*>(QApplication::activeModalWidget())->button(answer)->click();
        if (answer == 0)
            m_service->waitForCall("cancelInstallingComponent");
        else
            m_service->waitForCall("setDxvk", 2);
        QFETCH(int, kills);
        QTEST(m_service->calls("setDxvk").size(), "calls");
        QCOMPARE(m_service->calls("killWineServer").size(), kills);
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

    void bottleIsNotThere() {
        m_service->setHeld("Bottles.get:office", "{}");
        m_view = new BottlesConfigView;
        m_view->loadBottle("office");
        m_view->show();
        QVERIFY(find("loading_view")->isVisible());
        m_service->waitForCall("get");
        m_service->release();
        QTRY_VERIFY(find("failed_view")->isVisible());
        setBottle({"a"});
        find("failed_view")->findChild<QAbstractButton*>()->click();
        QTRY_COMPARE(entries().size(), 1);
    }

    void programs() {
        setBottle({"a"});
        open();
        const auto menu = [this](AppEntryButton* button) {
            QStringList texts;
            Q_EMIT button->menuRequested({});
            auto* opened = m_view->findChild<QMenu*>("entry_menu");
            for (const QAction* action : opened->actions())
                texts << action->text();
            delete opened;
            return texts;
        };
        QVERIFY(!menu(entries().first()).contains("Delete"));
        setBottle({"a", "b"});
        QVERIFY(m_service->emitSignal("program_added", "sss", {"home", "b", "{}"}) &&
                m_service->emitSignal("program_added", "sss", {"office", "b", "{}"}));
        QTRY_COMPARE(entries().size(), 2);
        QVERIFY(menu(entries().last()).contains("Delete"));
        QVERIFY(entries().last()->isChecked());
        QCOMPARE(m_view->title(), QString("Configuration of Program b"));
        m_view->onDeleteActionTriggered();
        find<Fenk::Dialog>("delete_entry_question")->button(1)->click();
        QCOMPARE(m_service->waitForCall("removeExternalProgram").arguments, QJsonArray({"office", "b"}));
        QTRY_COMPARE(entries().size(), 1);
        QVERIFY(entries().first()->isChecked());
    }

    void parametersAreSaved() {
        setBottle({"a", "b"});
        open();
        m_view->onConfigurePageToggled(BottlesConfigView::WineParameter);
        for (QLineEdit* edit : m_view->findChildren<QLineEdit*>()) {
            if (edit->placeholderText() == "Please enter startup parameters")
                edit->setText("-x 1");
        }
        m_view->changeSelectedIndex(1);
        m_view->close();
        const RecordedCall call = m_service->waitForCall("updateExternalProgram");
        const QJsonObject saved = QJsonDocument::fromJson(call.arguments.at(1).toString().toUtf8()).object();
        QCOMPARE(saved.value("id").toString(), QString("a"));
        QCOMPARE(saved.value("arguments").toString(), QString("-x 1"));
        QCOMPARE(m_service->calls("updateExternalProgram").size(), 1);
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

    void protonIsMadeReady() {
        std::function<void()> isReady;
        LaunchWindows::instance().prepareProton = [&](QObject*, const std::function<void()>& then) {
            isReady = then;
        };
        setBottle({"a"});
        open();
        auto* wine = find<ComponentsSwitcherWidget>("wine_version_combobox");
        activate(wine->combo(), wine->combo()->findData("ge-proton9"));
        QVERIFY(isReady);
        QVERIFY(m_service->calls("setRunner").isEmpty());
        isReady();
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

    void keysReachEverything_data() {
        const Table<int> row("page");
        row("basic", BottlesConfigView::Basic);
        row("parameters", BottlesConfigView::WineParameter);
        row("libraries", BottlesConfigView::DllOverride);
        row("fonts", BottlesConfigView::FontReplacement);
        row("components", BottlesConfigView::Components);
        row("tools", BottlesConfigView::DebuggingTools);
    }
    void keysReachEverything() {
        QFETCH(int, page);
        setBottle({"a", "b"});
        open();
        m_view->onConfigurePageToggled(page);
        m_view->showLogs();
        QCOMPARE(TestSupport::outOfReach(m_view), QString());
        entries().first()->setFocus();
        TestSupport::press(m_view, Qt::Key_Down);
        QVERIFY(entries().last()->isChecked() && entries().last()->hasFocus());
        QStringList nameless;
        for (QWidget* widget : m_view->findChildren<QWidget*>()) {
            const bool isControl = widget->isVisible() && (widget->focusPolicy() & Qt::TabFocus);
            if (isControl && !widget->focusProxy() &&
                QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name).isEmpty())
                nameless << widget->metaObject()->className() + QString(" ") + widget->objectName();
        }
        QCOMPARE(nameless.join(", "), QString());
    }

    void tablesAreReadFirst() {
        m_service->setAnswers("listDllOverrides",
                              {{{"error", "no"}, {"hold", true}}, {{"text", R"({"a": "n"})"}}});
        setBottle({"a"});
        m_view = new BottlesConfigView;
        m_view->loadBottle("office");
        m_service->waitForCall("listDllOverrides");
        QVERIFY(m_service->calls("get").isEmpty());
        QVERIFY(m_service->calls().first().method == "listFontReplacements");
        QSignalSpy loaded(m_view, &BottlesConfigView::bottlesLoaded);
        m_service->release();
        QTRY_COMPARE(loaded.count(), 1);
        // The service says more when the window reads anew; a step in a table is offered to be taken back.
        m_view->setLoading(true);
        m_view->setLoading(false);
        auto* table = find<BottleTable>("dlloverride_listview");
        QTRY_COMPARE(table->rows()->rowCount(), 1);
        m_view->onConfigurePageToggled(BottlesConfigView::DllOverride);
        table->selectRow(0);
        QTest::keyClick(table, Qt::Key_Delete);
        find<QAbstractButton>("undo_btn")->click();
        m_service->waitForCall("updateDllOverride", 2);
        QCOMPARE(m_service->calls("updateDllOverride").last().arguments,
                 QJsonArray({"office", "a", "n", false}));
    }

    void filesAreDropped() {
        setBottle({"a"});
        open();
        const auto drop = [this](const QString& file) {
            QMimeData data;
            data.setUrls({QUrl::fromLocalFile(file)});
            QDragEnterEvent enter({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(m_view, &enter);
            QDropEvent event({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(m_view, &event);
        };
        drop(m_home.write("notes.txt", "x"));
        QVERIFY(m_view->findChild<Fenk::FloatingMessage*>());
        drop(m_home.path() + "/gone.exe");
        const QString file = m_home.write("Setup 1.EXE", "x");
        drop(file);
        const QString saved = m_service->waitForCall("updateExternalProgram").arguments.at(1).toString();
        const QJsonObject record = QJsonDocument::fromJson(saved.toUtf8()).object();
        QCOMPARE(record.value("path").toString(), file);
        QCOMPARE(record.value("name").toString(), QString("Setup 1"));
        QCOMPARE(m_service->calls("updateExternalProgram").size(), 1);
    }

    void launchOpensIt() {
        const QString file = m_home.write("drive_c/b.exe", "x");
        setBottle({"a", "b"});
        m_service->setBottle("office",
                             {{"Path", m_home.path()},
                              {"External_Programs", QJsonObject{{"a", QJsonObject{{"path", "C:\\a.exe"}}},
                                                                {"b", QJsonObject{{"path", file}}}}}});
        auto over = std::make_unique<QWidget>();
        const auto open = [&over](const QString& id) {
            return LaunchedConfigWindow::open({"office", id}, LaunchWindows::ConfigMode::Ordinary,
                                              over.get());
        };
        BottleConfigWindow* window = open({});
        m_view = BottlesConfigView::openWindowOf("office");
        QVERIFY(m_view);
        window->setLoading(true);
        QVERIFY(find("loading_view")->isVisible());
        window->selectProgram(file);
        window->setLoading(false);
        QTRY_VERIFY(entries().size() == 2 && entries().last()->isChecked());
        open("a");
        QCOMPARE(BottlesConfigView::openWindowOf("office"), m_view.data());
        QTRY_VERIFY(entries().first()->isChecked());
        QSignalSpy closed(window, &BottleConfigWindow::closed);
        m_view->close();
        QCOMPARE(closed.count(), 1);
        QTRY_VERIFY(!m_view);
        open({});
        m_view = BottlesConfigView::openWindowOf("office");
        over.reset();
        QVERIFY(!m_view);
    }

    void columnStaysNarrow() {
        setBottle({"a"});
        open();
        const int wide = m_view->width();
        find<QAbstractButton>("expand_toolbar_btn")->click();
        QTRY_VERIFY(m_view->width() < wide);
        QCOMPARE(m_view->height(), 700);
        delete m_view;
        open();
        QVERIFY(m_view->width() < wide);
        find<QAbstractButton>("expand_toolbar_btn")->click();
        QTRY_COMPARE(m_view->width(), wide);
    }

    void wheelChangesNothing() {
        setBottle({"a"});
        open();
        for (QWidget* control :
             {static_cast<QWidget*>(dxvk()->combo()), find("window_version_combobox"), find("dpi_spinbox")}) {
            control->setFocus();
            QWheelEvent event({5, 5}, control->mapToGlobal({5, 5}), {}, {0, -120}, Qt::NoButton,
                              Qt::NoModifier, Qt::NoScrollPhase, false);
            QApplication::sendEvent(control, &event);
        }
        QCOMPARE(find<QSpinBox>("dpi_spinbox")->value(), 96);
        QCOMPARE(dxvk()->combo()->currentIndex(), 0);
        QCOMPARE(find<QComboBox>("window_version_combobox")->currentText(), QString("Windows 10"));
        QCOMPARE(settingCalls(), QStringList());
    }

    void searchFindsSettings() {
        setBottle({"a"});
        open();
        auto* edit = find<QLineEdit>("settings_search");
        edit->setText("memory");
        QVERIFY(find("mem_optimized_switch_btn")->isVisible());
        QVERIFY(!find("dpi_spinbox")->isVisible());
        edit->clear();
        QVERIFY(find("dpi_spinbox")->isVisible());
    }

    void closesWithItsBottle() {
        setBottle({"a"});
        open();
        QCOMPARE(BottlesConfigView::openWindowOf("office"), m_view.data());
        QSignalSpy closed(m_view, &BottlesConfigView::closed);
        QVERIFY(m_service->emitSignal("bottles_deleted", "s", {"home"}) &&
                m_service->emitSignal("bottles_deleted", "s", {"office"}));
        QTRY_VERIFY(!m_view);
        QCOMPARE(closed.count(), 1);
        QVERIFY(!BottlesConfigView::openWindowOf("office"));
    }
};

int main(int argc, char** argv) {
    const TestSupport::PrivateBus bus;  // before the application, which connects to it
    Fenk::Application app(argc, argv);
    ConfigurationWindowTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "ConfigurationWindowTest.moc"
