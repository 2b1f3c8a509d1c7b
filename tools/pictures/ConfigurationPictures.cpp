// Pictures of the configuration window with sample data: configuration-pictures STATE [--theme light|dark]
// --screenshot FILE. LANG chooses English or Chinese. Needs a session bus on which the name of the bottle
// service is free. A new state is a line in the table below.
#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QCompleter>
#include <QContextMenuEvent>
#include <QJsonArray>
#include <QMenu>
#include <QPushButton>
#include <QScrollArea>
#include <QTemporaryDir>
#include <QtTest>
#include <functional>

#include "Pictures.h"
#include "fenk/controls/SearchEdit.h"
#include "launch/LaunchWindows.h"
#include "launch/winelog/LogParseRule.h"
#include "shell/configuration/page/AppEntryButton.h"
#include "shell/configuration/page/BottlesConfigView.h"
#include "shell/configuration/page/ComponentsSwitcherWidget.h"
#include "shell/configuration/page/DebuggingLogsFrame.h"
#include "shell/configuration/page/DriverWarning.h"
#include "shell/configuration/tables/BottleTable.h"
#include "support/FakeBottleService.h"

using namespace TestSupport;

namespace {

const char Bottle[] = "office";

struct Scene {
    FakeBottleService* service;
    BottlesConfigView* view;
    bool tell(const QString& signal, const QString& kind, const QString& name) const {
        return service->emitSignal(signal, "sss", {Bottle, kind, name});
    }
    void choose(const QString& switcher, int index) const {
        auto* widget = view->findChild<ComponentsSwitcherWidget*>(switcher);
        Q_EMIT widget->chosen(widget->findChild<QComboBox*>()->itemData(index).toString());
        settle(300);
    }
};

QList<QWidget*> plain(const Scene& scene) {
    return {scene.view};
}

QList<QWidget*> changed(const Scene& scene) {
    scene.view->findChild<QAbstractButton*>("software_render_switch_btn")->click();
    scene.view->findChild<QComboBox*>("window_version_combobox")->setCurrentIndex(3);
    settle(300);
    return {scene.view};
}

/// One component is fetched, one set up, one has failed.
QList<QWidget*> setups(const Scene& scene) {
    scene.choose("dxvk_versions_combobox", 1);
    scene.choose("vkd3d_versions_combobox", 1);
    scene.choose("wine_version_combobox", 1);
    scene.tell("component_waiting_downloaded", "dxvk", "dxvk-2.3");
    scene.service->emitSignal("/com/lumora/Manager/Components", "com.lumora.Manager.Components",
                              "updateProgress", "ssuus", {"dxvk", "dxvk-2.3", 3000000, 8000000, ""});
    scene.tell("component_setup_start", "vkd3d", "vkd3d-proton-2.11");
    scene.service->emitSignal("component_setup_done", "ssss",
                              {Bottle, "runner", "lumora-wine-staging",
                               "{\"ok\": false, \"reasons\": [{\"code\": \"no-connection\", \"arguments\": "
                               "[\"wine-staging.tar.xz\", \"dl.example.org\"]}]}"});
    scene.view->findChild<QScrollArea*>("basic_page")
        ->ensureWidgetVisible(scene.view->findChild<QWidget*>("wine_version_combobox"));
    settle(500);
    return {scene.view};
}

/// A Proton has been chosen, and its set-up is being checked.
QList<QWidget*> preparing(const Scene& scene) {
    LaunchWindows::instance().prepareProton = [](QObject*, const std::function<void()>&) {};
    Q_EMIT scene.view->findChild<ComponentsSwitcherWidget*>("wine_version_combobox")->chosen("ge-proton9");
    scene.view->findChild<QScrollArea*>("basic_page")
        ->ensureWidgetVisible(scene.view->findChild<QWidget*>("ntsync_switch_btn"));
    settle(300);
    return {scene.view};
}

QList<QWidget*> question(const Scene& scene) {
    scene.choose("dxvk_versions_combobox", 1);
    scene.service->emitSignal(
        "component_setup_done", "ssss",
        {Bottle, "dxvk", "dxvk-2.3", "{\"ok\": false, \"busy\": [\"Harbour Office\"]}"});
    settle(500);
    return {scene.view, QApplication::activeModalWidget()};
}

QList<QWidget*> logs(const Scene& scene) {
    scene.view->showLogs();
    auto* log = scene.view->findChild<DebuggingLogsFrame*>();
    log->append(
        {{"0024:fixme:win:RegisterTouchWindow (0000000000010058 00000000): stub", false},
         {"0024:err:module:import_dll Library mfc42.dll (which is needed by L\"C:\\\\office.exe\") not found",
          true}});
    settle(300);
    return {scene.view};
}

/// After a debugging run, with every kind of hint.
QList<QWidget*> hints(const Scene& scene) {
    logs(scene);
    HintFacts facts;
    facts.isMonoMissing = true;
    facts.missingFonts = QStringList{"simsun.ttc", "msyh.ttf"};
    facts.missingComponents = QStringList{"mfc42"};
    facts.isGame = true;
    facts.findings = LogMissingWinRT;
    scene.view->findChild<DebuggingLogsFrame*>()->showHints(HintRules::of(facts));
    settle(300);
    return {scene.view};
}

QList<QWidget*> choose(const Scene& scene) {
    const auto found = [](const char* id, const char* name, const char* path) {
        return QJsonObject{{"id", id}, {"name", name}, {"path", path}, {"auto_discovered", true}};
    };
    scene.service->setJson(
        "listBottlesAllPrograms",
        QJsonArray{QJsonObject{{"id", "a"}, {"name", "Harbour Office"}, {"path", "C:\\Harbour\\office.exe"}},
                   found("d", "Harbour Notes", "C:\\Program Files (x86)\\Harbour\\Suite\\bin\\notes.exe"),
                   found("e", "Harbour Sheets", "C:\\Program Files (x86)\\Harbour\\Suite\\bin\\sheets.exe")});
    scene.view->onAddEntryButtonClicked();
    settle(800);
    return {scene.view, QApplication::activeModalWidget()};
}

QList<QWidget*> menu(const Scene& scene) {
    auto* button = scene.view->findChild<AppEntryButton*>();
    Q_EMIT button->menuRequested(button->mapToGlobal(button->rect().bottomLeft()));
    settle(300);
    return {scene.view, scene.view->findChild<QMenu*>("entry_menu")};
}

QList<QWidget*> tools(const Scene& scene) {
    scene.view->onConfigurePageToggled(BottlesConfigView::DebuggingTools);
    settle(100);
    return {scene.view};
}

QList<QWidget*> resetQuestion(const Scene& scene) {
    scene.view->findChild<QComboBox*>("window_version_combobox")->setCurrentIndex(3);
    scene.view->findChild<QComboBox*>("d3drenderer_combobox")->setCurrentIndex(1);
    tools(scene);
    scene.view->findChild<QAbstractButton*>("reset_bottle_btn")->click();
    settle(300);
    return {scene.view, QApplication::activeModalWidget()};
}

QList<QWidget*> parameters(const Scene& scene) {
    scene.view->onConfigurePageToggled(BottlesConfigView::WineParameter);
    scene.view->showLogs();
    settle(300);
    return {scene.view};
}

/// Rows that depend on the runner, and a layer that the machine cannot run.
QList<QWidget*> proton(const Scene& scene) {
    scene.service->setBottle(Bottle,
                             {{"Path", "/tmp"},
                              {"Runner", "lumora-ge-proton10"},
                              {"Windows", "win11"},
                              {"VKD3D", "vkd3d-proton-2.11"},
                              {"Parameters", QJsonObject{{"custom_dpi", 144}, {"renderer", "vulkan"}}}});
    scene.view->setLoading(true);
    scene.view->setLoading(false);
    settle(500);
    scene.view->findChild<QScrollArea*>("basic_page")
        ->ensureWidgetVisible(scene.view->findChild<QWidget*>("ntsync_switch_btn"));
    settle(100);
    return {scene.view};
}

QList<QWidget*> driver(const Scene& scene) {
    auto* warning = new DriverWarning(scene.view);
    warning->open();
    settle(300);
    return {scene.view, warning};
}

QList<QWidget*> search(const Scene& scene) {
    scene.view->findChild<Fenk::SearchEdit*>()->setText("vulkan");
    settle(100);
    return {scene.view};
}

QList<QWidget*> narrow(const Scene& scene) {
    scene.view->findChild<QAbstractButton*>("expand_toolbar_btn")->click();
    settle(600);
    return {scene.view};
}

QList<QWidget*> failed(const Scene& scene) {
    scene.service->setError("Bottles.get:office", "the disk is on fire");
    scene.view->setLoading(true);
    scene.view->setLoading(false);
    settle(500);
    return {scene.view};
}

QList<QWidget*> loading(const Scene& scene) {
    scene.view->setLoading(true);
    settle(900);
    return {scene.view};
}

BottleTable* tableOn(const Scene& scene, BottlesConfigView::Page page, const QString& name) {
    scene.view->onConfigurePageToggled(page);
    settle(100);
    return scene.view->findChild<BottleTable*>(name);
}

BottleTable* dllTable(const Scene& scene) {
    return tableOn(scene, BottlesConfigView::DllOverride, "dlloverride_listview");
}

BottleTable* fontTable(const Scene& scene) {
    return tableOn(scene, BottlesConfigView::FontReplacement, "fontreplacement_listview");
}

QList<QWidget*> withMenu(const Scene& scene, BottleTable* table) {
    table->selectRow(1);
    QContextMenuEvent event(QContextMenuEvent::Mouse, {200, 60}, table->viewport()->mapToGlobal({200, 60}));
    QApplication::sendEvent(table->viewport(), &event);
    settle(300);
    return {scene.view, table->findChild<QMenu*>("table_menu")};
}

QList<QWidget*> dlls(const Scene& scene) {
    dllTable(scene)->selectRow(1);
    return {scene.view};
}

QList<QWidget*> dllsEdited(const Scene& scene) {
    BottleTable* table = dllTable(scene);
    table->setFocus(Qt::TabFocusReason);
    table->editRow(1);
    settle(300);
    return {scene.view};
}

QList<QWidget*> dllsTyped(const Scene& scene) {
    BottleTable* table = dllTable(scene);
    table->setFocus(Qt::TabFocusReason);
    table->editRow(1);
    auto* combo = table->findChild<QComboBox*>();
    QTest::keyClicks(combo, "d3d");
    settle(300);
    return {scene.view, combo->completer()->popup()};
}

QList<QWidget*> dllsMethods(const Scene& scene) {
    BottleTable* table = dllTable(scene);
    table->setCurrentIndex(table->model()->index(1, 1));
    table->edit(table->currentIndex());
    settle(300);
    return {scene.view, table->findChild<QComboBox*>()->view()->window()};
}

QList<QWidget*> dllsEmpty(const Scene& scene) {
    dllTable(scene)->clear();
    settle(100);
    return {scene.view};
}

QList<QWidget*> dllsMenu(const Scene& scene) {
    return withMenu(scene, dllTable(scene));
}

QList<QWidget*> scan(const Scene& scene) {
    dllTable(scene);
    scene.view->findChild<QPushButton*>("dlloverride_scanbtn")->menu()->actions().first()->trigger();
    settle(500);
    return {scene.view, scene.view->findChild<QWidget*>("scan_dialog")};
}

QList<QWidget*> fonts(const Scene& scene) {
    fontTable(scene)->selectRow(0);
    return {scene.view};
}

QList<QWidget*> fontsEmpty(const Scene& scene) {
    fontTable(scene)->clear();
    settle(100);
    return {scene.view};
}

QList<QWidget*> fontsMenu(const Scene& scene) {
    return withMenu(scene, fontTable(scene));
}

QList<QWidget*> fontDialog(const Scene& scene) {
    fontTable(scene);
    scene.view->findChild<QAbstractButton*>("fontreplacement_addbtn")->click();
    settle(300);
    return {scene.view, scene.view->findChild<QWidget*>("fontreplacement_add_dialog")};
}

QList<QWidget*> fontChoice(const Scene& scene) {
    BottleTable* table = fontTable(scene);
    table->selectRow(1);
    table->openMenu(table->mapToGlobal({200, 60}), false);
    auto* menu = table->findChild<QMenu*>("table_menu");
    menu->actions().first()->trigger();
    menu->close();
    settle(500);
    return {scene.view, table->findChild<QWidget*>("replacement_dialog")};
}

QImage paint(const std::function<QList<QWidget*>(const Scene&)>& windows) {
    const QTemporaryDir directory;
    FakeBottleService service;
    if (!service.start(true))
        return {};
    service.setJson("Components.list",
                    QJsonObject{{"runner", QJsonObject{{"installed", QJsonArray{"lumora-wine10-stable"}},
                                                       {"supported", QJsonArray{"lumora-wine-staging"}}}},
                                {"dxvk", QJsonObject{{"supported", QJsonArray{"dxvk-2.3", "dxvk-1.10.3"}}}},
                                {"vkd3d", QJsonObject{{"supported", QJsonArray{"vkd3d-proton-2.11"}}}}});
    service.setJson("Bottles.listDllOverrides",
                    QJsonObject{{"d3d9", "n,b"}, {"mshtml", ""}, {"msvcp140", "n"}, {"updater.exe", ""}});
    service.setJson("Bottles.listFontReplacements",
                    QJsonObject{{"Arial", "WenQuanYi Micro Hei"},
                                {QString::fromUtf8("微软雅黑"), "Noto Sans CJK SC"},
                                {"Segoe UI", "DejaVu Sans"}});
    service.setJson("Bottles.getExternalProgramsDllList", QJsonArray{"D3D9", "MSVCP140", "zlib1", "ffmpeg"});
    service.setBottle(
        Bottle,
        {{"Path", directory.path()},
         {"Runner", "lumora-wine10-stable"},
         {"Windows", "win10"},
         {"Parameters", QJsonObject{{"custom_dpi", 96}, {"renderer", "gl"}}},
         {"External_Programs",
          QJsonObject{
              {"a", QJsonObject{{"name", "Harbour Office"}}},
              {"b", QJsonObject{{"name", QString::fromUtf8("迅捷屏幕录像工具专业版")}}},
              {"c", QJsonObject{{"name", "The Very Long Name of a Program That Nobody Can Remember"}}}}}});
    if (!service.takeName())
        return {};
    BottlesConfigView view;
    view.setAttribute(Qt::WA_DeleteOnClose, false);
    view.loadBottle(Bottle);
    view.show();
    view.activateWindow();
    settle(800);
    return picture(windows({&service, &view}));
}

}  // namespace

int main(int argc, char** argv) {
    LaunchWindows::instance().packaging = [](const ProgramRef&, QWidget*) {};
    using Windows = QList<QWidget*> (*)(const Scene&);
    const QVector<std::pair<const char*, Windows>> states{{"plain", plain},
                                                          {"changed", changed},
                                                          {"setups", setups},
                                                          {"preparing", preparing},
                                                          {"question", question},
                                                          {"logs", logs},
                                                          {"hints", hints},
                                                          {"choose", choose},
                                                          {"menu", menu},
                                                          {"tools", tools},
                                                          {"reset", resetQuestion},
                                                          {"search", search},
                                                          {"narrow", narrow},
                                                          {"failed", failed},
                                                          {"loading", loading},
                                                          {"dlls", dlls},
                                                          {"dlls-edited", dllsEdited},
                                                          {"dlls-typed", dllsTyped},
                                                          {"dlls-methods", dllsMethods},
                                                          {"dlls-empty", dllsEmpty},
                                                          {"dlls-menu", dllsMenu},
                                                          {"scan", scan},
                                                          {"fonts", fonts},
                                                          {"fonts-empty", fontsEmpty},
                                                          {"fonts-menu", fontsMenu},
                                                          {"font-dialog", fontDialog},
                                                          {"parameters", parameters},
                                                          {"driver", driver},
                                                          {"font-choice", fontChoice},
                                                          {"proton", proton}};
    return takePicture(argc, argv, states, paint);
}
