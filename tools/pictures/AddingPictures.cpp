// Pictures of the page that adds programs: adding-pictures STATE [--theme light|dark] --screenshot FILE
// LANG chooses English or Chinese. A new state is a line in the table below.
#include <QAbstractButton>
#include <QApplication>
#include <QJsonArray>

#include "Pictures.h"
#include "fenk/controls/LineEdit.h"
#include "shell/DropFrame.h"
#include "shell/IndexView.h"
#include "shell/Mainwindow.h"
#include "shell/library/AppLocalView.h"
#include "support/FakeBottleService.h"
#include "support/FakePackages.h"
#include "support/HttpServer.h"
#include "support/PrivateBus.h"

using namespace TestSupport;

namespace {

constexpr int ShortMs = 800;

struct Scene {
    const TestHome* home;
    HttpServer* server;
    Mainwindow* window;

    void add(const QString& path) const {
        window->indexView()->add(QStringList(path));
        settle(ShortMs);
    }
    void press(const QString& name) const {
        for (auto* button : window->findChildren<QAbstractButton*>()) {
            if (button->accessibleName() == name || button->objectName() == name)
                button->click();
        }
        settle(ShortMs);
    }
    void download(const QString& path) const {
        window->indexView()->add(QStringList(server->address(path)));
        press("download_btn");
    }
};

QByteArray program() {
    return readFile("/usr/lib/x86_64-linux-gnu/wine/x86_64-windows/notepad.exe");
}

const char Manifest[] =
    "Name: Harbour Office\nSetup: {Version: 7.4.2}\nContributor: {Name: Ann}\nDebInfo: {}\n";

QImage paint(const std::function<void(const Scene&)>& act) {
    const TestHome home;
    const FakePackages packages(home, "lumora-wine8-stable", "archived-wine");
    HttpServer server;
    server.etag = "\"1\"";
    server.files = {{"Harbour-Office-7.4.2-x64.exe", program()},
                    {"large.exe", "MZ" + QByteArray(40 << 20, 'x')},
                    {"page.exe", "<html>Download</html>"}};
    FakeBottleService service;
    service.start();
    service.setJson("listAllPrograms", QJsonArray());
    service.setJson("Components.list",
                    QJsonObject{{"runner", QJsonObject{{"installed", QJsonArray{"lumora-wine10-stable"}}}}});
    Mainwindow window;
    window.show();
    window.activateWindow();
    settle(ShortMs);
    window.indexView()->localView()->slotAddApp();
    const Scene scene{&home, &server, &window};
    act(scene);
    QList<QWidget*> windows{&window};
    if (QWidget* dialog = QApplication::activeModalWidget())
        windows << dialog;
    return picture(windows);
}

const struct {
    const char* name;
    std::function<void(const Scene&)> act;
} States[] = {
    {"local", [](const Scene&) {}},
    {"local-valid",
     [](const Scene& scene) { scene.add(scene.home->write("Harbour-Office-7.4.2-x64.exe", program())); }},
    {"local-refused", [](const Scene& scene) { scene.add(scene.home->write("Setup.exe", "<html></html>")); }},
    {"local-looking", [](const Scene& scene) { scene.add("/proc"); }},
    {"online", [](const Scene& scene) { scene.press("online_tab"); }},
    {"online-downloading", [](const Scene& scene) { scene.download("stalled/large.exe"); }},
    {"online-interrupted", [](const Scene& scene) { scene.download("half/large.exe"); }},
    {"online-page", [](const Scene& scene) { scene.download("page.exe"); }},
    {"online-done", [](const Scene& scene) { scene.download("Harbour-Office-7.4.2-x64.exe"); }},
    {"portable", [](const Scene& scene) { scene.press("portable_tab"); }},
    {"portable-valid",
     [](const Scene& scene) {
         scene.add(QFileInfo(scene.home->write("PixelGarden-2.1-portable/garden.exe", "MZ")).path());
     }},
    {"manifest",
     [](const Scene& scene) {
         scene.add(scene.home->write("harbour.yml", Manifest));
         scene.press("add_apps_run");
     }},
    {"drop",
     [](const Scene& scene) {
         scene.window->findChild<DropFrame*>()->raise();
         scene.window->findChild<DropFrame*>()->show();
     }},
};

}  // namespace

int main(int argc, char** argv) {
    const PrivateBus bus;  // before the application, which connects to it
    QVector<PictureState> states;
    for (const auto& state : States)
        states.append({state.name, [&state] { return paint(state.act); }});
    return takePicture(argc, argv, states);
}
