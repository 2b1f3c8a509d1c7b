#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QDropEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QSpinBox>
#include <QStandardItemModel>
#include <QWheelEvent>

#include "ConfigurationFixture.h"
#include "fenk/controls/FloatingMessage.h"
#include "shell/configuration/page/BottleSettings.h"
#include "shell/configuration/page/LaunchedConfigWindow.h"
#include "shell/configuration/tables/BottleTable.h"

/// The window itself, its programs and its pages.
class ConfigurationWindowTest : public ConfigurationFixture {
    Q_OBJECT

private Q_SLOTS:
    void loadingNeverWrites() {
        setBottle({"a"}, {{"Windows", "winxp64"},
                          {"DXVK", "dxvk-1"},
                          {"Parameters", QJsonObject{{"custom_dpi", 0},
                                                     {"renderer", "gl"},  // as an old record has it
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
        // Another step does not lose a DPI that is held back, nor mistake it for the one on offer.
        find<QSpinBox>("dpi_spinbox")->stepUp();
        find<QAbstractButton>("undo_btn")->click();
        m_service->waitForCall("setWindowsVersion", 3);
        QCOMPARE(m_service->calls("setWindowsVersion").last().arguments, QJsonArray({"office", "win7"}));
        QCOMPARE(m_service->calls("setDPI").last().arguments, QJsonArray({"office", 126}));
        // What is held back is sent when the window closes.
        find<QSpinBox>("dpi_spinbox")->stepUp();
        m_view->close();
        m_service->waitForCall("setDPI", 4);
        QTRY_VERIFY(!m_view);
    }

    void bottleIsResetAndPackaged() {
        m_service->clearCalls();
        setBottle({"a"}, {{"Windows", "win7"}, {"Parameters", QJsonObject{{"renderer", "gdi"}}}});
        QStringList packaged;
        LaunchWindows::instance().packaging = [&](const ProgramRef& ref, QWidget*) {
            packaged << ref.bottle << ref.uuid;
        };
        open();
        find<QAbstractButton>("package_bottle_btn")->click();
        QCOMPARE(packaged, QStringList({"office", "a"}));
        LaunchWindows::instance() = {};
        find<QAbstractButton>("reset_bottle_btn")->click();
        auto* question = find<Fenk::Dialog>("reset_question");
        QVERIFY(question->message().contains("Windows version") && !question->message().contains("DPI"));
        QCOMPARE(settingCalls(), QStringList());
        question->button(1)->click();
        QCOMPARE(m_service->waitForCall("setWindowsVersion").arguments, QJsonArray({"office", "win10"}));
        QCOMPARE(m_service->calls("setD3dRenderer").value(0).arguments, QJsonArray({"office", "gl"}));
    }

    void choicesOfAReloadOutliveTheWindow() {
        m_service->clearCalls();
        setBottle({"a"});
        auto settings = std::make_unique<BottleSettings>("office", nullptr);
        settings->load();
        QTRY_COMPARE(settings->state(), BottleSettings::State::Ready);
        settings->load();
        settings->choose(Setting::Dxvk, "dxvk-1");
        settings->choose(Setting::Dpi, 126);
        settings.reset();
        QCOMPARE(m_service->waitForCall("setDPI").arguments, QJsonArray({"office", 126}));
        QCOMPARE(m_service->calls("setDxvk").value(0).arguments, QJsonArray({"office", "dxvk-1", true}));
        QCOMPARE(m_service->calls("setD3dRenderer").value(0).arguments, QJsonArray({"office", "vulkan"}));
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
        // The service says more when the window reads anew.
        m_view->setLoading(true);
        m_view->setLoading(false);
        QTRY_COMPARE(find<BottleTable>("dlloverride_listview")->rows()->rowCount(), 1);
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

    void toolsSayWhatFails_data() {
        const Table<QString> row("tool");
        row("service", "Wine Configuration");
        row("terminal of a bottle that is not there", "Open in terminal");
    }
    void toolsSayWhatFails() {
        QFETCH(QString, tool);
        m_service->setError("Bottles.run_command", "out of order");
        setBottle({"a"});
        open();
        m_view->onConfigurePageToggled(BottlesConfigView::DebuggingTools);
        for (QAbstractButton* button : m_view->findChildren<QAbstractButton*>()) {
            if (button->text() == tool)
                button->click();
        }
        QTRY_VERIFY(m_view->findChild<Fenk::FloatingMessage*>());
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
        for (int i = 0; i < 3; ++i)  // each of quick ones counts
            find<QAbstractButton>("expand_toolbar_btn")->click();
        QTRY_COMPARE(m_view->width(), wide);
    }

    /// Neither the wheel nor a key on a list that is not open, nor what is told while digits are typed.
    void nothingChangesUnseen() {
        setBottle({"a"});
        open();
        for (QWidget* control :
             {static_cast<QWidget*>(dxvk()->combo()), find("window_version_combobox"), find("dpi_spinbox")}) {
            control->setFocus();
            QWheelEvent event({5, 5}, control->mapToGlobal({5, 5}), {}, {0, -120}, Qt::NoButton,
                              Qt::NoModifier, Qt::NoScrollPhase, false);
            QApplication::sendEvent(control, &event);
            if (qobject_cast<QComboBox*>(control))
                QTest::keyClicks(control, "dw");
        }
        auto* dpi = find<QSpinBox>("dpi_spinbox");
        dpi->selectAll();
        QTest::keyClick(dpi, Qt::Key_2);
        Q_EMIT m_view->findChild<BottleSettings*>()->changed();
        QCOMPARE(dpi->text(), QString("2"));
        QCOMPARE(dpi->value(), 96);
        QTest::keyClick(dxvk()->combo(), Qt::Key_Down);
        QVERIFY(dxvk()->combo()->view()->isVisible());
        dxvk()->combo()->hidePopup();
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
        edit->setText("regedit and nothing else");
        QVERIFY(find("nothing_found")->isVisible());
        for (const auto& [text, hit] : {std::pair{"Log Channel", "params_channels"}, {"c-drive", ""}}) {
            edit->setText(text);
            QVERIFY(!find("nothing_found")->isVisible());
            QVERIFY(!find("dpi_spinbox")->isVisible() && !find("params_arguments")->isVisible());
            QVERIFY(!*hit || find(hit)->isVisible());
        }
        m_view->onConfigurePageToggled(BottlesConfigView::FontReplacement);
        QVERIFY(find("nothing_found")->isVisible());
        edit->clear();
        m_view->onConfigurePageToggled(BottlesConfigView::Basic);
        QVERIFY(find("dpi_spinbox")->isVisible() && !find("nothing_found")->isVisible());
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
