// Pictures of the page of components and of Proton's dialog with sample data: components-pictures STATE
// [--theme light|dark] --screenshot FILE. LANG chooses English or Chinese. Needs a session bus on which the
// name of the bottle service is free. A new state is a line in the table below.
#include <QApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <functional>

#include "Pictures.h"
#include "backend/ComponentManager.h"
#include "shell/configuration/components/BottleDependencies.h"
#include "shell/configuration/components/ComponentsListView.h"
#include "shell/configuration/components/ComponentsPage.h"
#include "shell/configuration/components/InstallProtonDialog.h"
#include "shell/configuration/components/ProtonItemRow.h"
#include "shell/configuration/page/BottlesConfigView.h"
#include "support/FakeBottleService.h"

using namespace TestSupport;

namespace {

const char Bottle[] = "office";

struct Scene {
    FakeBottleService* service;
    BottlesConfigView* view;

    ComponentsPage* page() const { return view->findChild<ComponentsPage*>(); }
    BottleDependencies* dependencies() const { return page()->list()->dependencies(); }
    void tell(const QString& signal, const QString& signature, const QJsonArray& arguments) const {
        service->emitSignal(signal, signature, arguments);
    }
};

QList<QWidget*> plain(const Scene& scene) {
    return {scene.view};
}

/// One is fetched, two wait, one has failed.
QList<QWidget*> work(const Scene& scene) {
    for (const char* name : {"corefonts", "d3dx9", "cjkfonts", "comctl32"})
        scene.dependencies()->install(name);
    scene.tell("dependencySetupDone", "sss",
               {Bottle, "corefonts",
                "{\"ok\": false, \"reasons\": [{\"code\": \"no-connection\", \"arguments\": "
                "[\"andale32.exe\", \"downloads.example.org\"]}]}"});
    scene.tell("dependencySetupDescription", "sss", {Bottle, "d3dx9", "Downloading directx_Jun2010.exe"});
    scene.tell("dependencyDownloadProgress", "ssuus", {Bottle, "d3dx9", 41000000, 100271992, "downloading"});
    scene.page()->list()->select("corefonts");
    settle(500);
    return {scene.view};
}

QList<QWidget*> search(const Scene& scene) {
    scene.page()->filter("msvcp140");
    settle(200);
    return {scene.view};
}

QList<QWidget*> installed(const Scene& scene) {
    scene.page()->filter("vcredist2019");
    scene.page()->list()->setFocus();
    settle(200);
    return {scene.view};
}

QList<QWidget*> unavailable(const Scene& scene) {
    scene.page()->list()->select("mfc40");
    settle(200);
    return {scene.view};
}

QList<QWidget*> nothing(const Scene& scene) {
    scene.page()->filter("no such thing");
    settle(200);
    return {scene.view};
}

QList<QWidget*> question(const Scene& scene) {
    scene.dependencies()->install("d3dx9");
    scene.tell("dependencySetupDone", "sss",
               {Bottle, "d3dx9", "{\"ok\": false, \"busy\": [\"Harbour Office\"]}"});
    settle(500);
    return {scene.view, QApplication::activeModalWidget()};
}

QList<QWidget*> proton(const Scene& scene) {
    InstallProtonDialog::openOver(scene.view);
    settle(400);
    return {scene.view, QApplication::activeModalWidget()};
}

QList<QWidget*> protonWithoutStore(const Scene& scene) {
    InstallProtonDialog::openOver(scene.view);
    scene.service->setError("openBusinessUri", "no");
    Q_EMIT QApplication::activeModalWidget()->findChild<ProtonItemRow*>("ge-proton9")->pressed("ge-proton9");
    settle(800);
    return {scene.view, QApplication::activeModalWidget()};
}

QImage paint(const std::function<QList<QWidget*>(const Scene&)>& windows) {
    const QTemporaryDir directory;
    FakeBottleService service;
    if (!service.start(true))
        return {};
    service.setJson("Components.list",
                    QJsonObject{{"runner", QJsonObject{{"installed", QJsonArray{"lumora-proton9"}},
                                                       {"supported", QJsonArray{"ge-proton9"}}}}});
    service.setBottle(Bottle, {{"Path", directory.path()},
                               {"Runner", "lumora-wine10-stable"},
                               {"Windows", "win10"},
                               {"Installed_Dependencies", QJsonArray{"vcredist2019", "dotnet48", "cjkfonts"}},
                               {"External_Programs", QJsonObject{{"a", QJsonObject{{"name", "Office"}}}}}});
    service.setText("describe", R"([
        {"name":"mfc40","available":false,"reasons":[{"code":"no-known-file","arguments":["mfc40"]},
                                                     {"code":"has-winetricks","arguments":["mfc40"]}]},
        {"name":"corefonts","available":true,"files":[
         {"name":"andale32.exe","size":198384,"host":"sf.net"},{"name":"arial32.exe","host":"sf.net"}]},
        {"name":"d3dx9","available":true,
         "files":[{"name":"directx_Jun2010.exe","size":100271992,"host":"download.microsoft.com"}]},
        {"name":"vcredist2019","available":true,"needs":[],"files":[
         {"name":"vc_redist_2019.x86.exe","size":13767776,"host":"aka.ms"},
         {"name":"vc_redist_2019.x64.exe","size":25235992,"cached":true,"host":"aka.ms"}]}])");
    if (!service.takeName())
        return {};
    BottlesConfigView view;
    view.setAttribute(Qt::WA_DeleteOnClose, false);
    view.loadBottle(Bottle);
    view.show();
    view.activateWindow();
    settle(500);
    view.onConfigurePageToggled(BottlesConfigView::Components);
    settle(500);
    return picture(windows({&service, &view}));
}

}  // namespace

int main(int argc, char** argv) {
    using Windows = QList<QWidget*> (*)(const Scene&);
    const QVector<std::pair<const char*, Windows>> states{{"plain", plain},
                                                          {"work", work},
                                                          {"search", search},
                                                          {"installed", installed},
                                                          {"unavailable", unavailable},
                                                          {"nothing", nothing},
                                                          {"question", question},
                                                          {"proton", proton},
                                                          {"proton-without-store", protonWithoutStore}};
    return takePicture(argc, argv, states, paint);
}
