// Pictures of the export of a manifest with sample data: manifest-pictures STATE [--theme light|dark]
// --screenshot FILE. LANG chooses English or Chinese. A new state is a line in the table below.
#include <QComboBox>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

#include "Pictures.h"
#include "core/base/SettingsStore.h"
#include "fenk/window/MainWindow.h"
#include "packaging/manifest/ExportYamlDialog.h"
#include "support/FakeBottleService.h"
#include "support/HttpServer.h"
#include "support/TestHome.h"

using namespace TestSupport;

namespace {

const QString Uuid = "00000000-0000-4000-8000-000000000001";
constexpr int ShortMs = 600;

struct Scene {
    FakeBottleService* service;
    HttpServer* store;
    ExportYamlDialog* dialog;

    void type(const char* field, const QString& text) const {
        dialog->findChild<QLineEdit*>(field)->setText(text);
    }
    void fill() const {
        dialog->findChild<QPlainTextEdit*>("export_introduction")
            ->setPlainText(QString::fromUtf8("Writes, calculates and presents 海港办公"));
        dialog->findChild<QComboBox*>("export_category")->setCurrentIndex(1);
        type("export_url", "https://harbour.example/download/office.exe");
        type("export_size", "84");
        type("export_contributor", "Ann Harbour");
        type("export_email", "ann@harbour.example");
    }
    void ok() const {
        fill();
        dialog->button(1)->setFocus(Qt::TabFocusReason);
        static_cast<QPushButton*>(dialog->button(1))->click();
        settle(ShortMs);
    }
};

QImage paint(const std::function<void(const Scene&)>& act, bool hasStore = true) {
    const TestHome home;
    FakeBottleService service;
    service.start();
    const QString icon = home.path() + "/icon.png";
    sampleIcon(1, "H").save(icon);
    const QJsonObject program{{"name", "Harbour Office"}, {"icon", icon}};
    service.setBottle("office", {{"Path", home.path()}, {"External_Programs", QJsonObject{{Uuid, program}}}});
    HttpServer store;
    const QJsonArray categories{QJsonObject{{"id", 1}, {"name", "Office"}},
                                QJsonObject{{"id", 2}, {"name", QString::fromUtf8("图形图像")}}};
    if (hasStore)
        store.files["categories"] =
            QJsonDocument(QJsonObject{{"code", 200}, {"data", QJsonObject{{"list", categories}}}}).toJson();
    settingsStore()->setOption("client.base_url.", store.address({}).chopped(1));
    Fenk::MainWindow window;
    window.resize(900, 820);
    window.show();
    ExportYamlDialog dialog("office", Uuid, &window);
    dialog.open();
    settle(ShortMs);
    act({&service, &store, &dialog});
    settle(ShortMs);
    return picture({&window, &dialog});
}

}  // namespace

int main(int argc, char** argv) {
    return takePicture(argc, argv,
                       {{"empty", [] { return paint([](const Scene&) {}); }},
                        {"filled", [] { return paint([](const Scene& scene) { scene.fill(); }); }},
                        {"temporary",
                         [] {
                             return paint([](const Scene& scene) {
                                 scene.fill();
                                 scene.type("export_url", "https://harbour.example/office.exe?auth_key=1f");
                             });
                         }},
                        {"writing",
                         [] {
                             return paint([](const Scene& scene) {
                                 scene.service->setHeld("dumpManifest", "/tmp/manifest.yml");
                                 scene.ok();
                             });
                         }},
                        {"failed",
                         [] {
                             return paint([](const Scene& scene) {
                                 scene.service->setError("dumpManifest",
                                                         "There is no program of this id in the bottle.");
                                 scene.ok();
                             });
                         }},
                        {"offline", [] { return paint([](const Scene&) {}, false); }}});
}
