// Pictures of the rating of a program with sample data: rating-pictures STATE [--theme light|dark]
// --screenshot FILE. LANG chooses English or Chinese. A new state is a line in the table below.
#include <QAbstractButton>
#include <QListWidget>
#include <QPlainTextEdit>

#include "Pictures.h"
#include "core/base/SettingsStore.h"
#include "feedback/rating/ApplyScoreDialog.h"
#include "fenk/window/MainWindow.h"
#include "support/FakeBottleService.h"
#include "support/HttpServer.h"
#include "support/TestHome.h"

using namespace TestSupport;

namespace {

const QString Uuid = "00000000-0000-4000-8000-000000000001";
constexpr int ShortMs = 600;

struct Scene {
    HttpServer* server;
    ApplyScoreDialog* dialog;

    void press(const char* name) const {
        dialog->findChild<QAbstractButton*>(name)->click();
        settle(ShortMs);
    }
    void fill(bool agrees = true) const {
        dialog->findChild<QPlainTextEdit*>("applyscore_dialog_suggestion_edit")
            ->setPlainText(QString::fromUtf8("Starts at once now; the tool bar flickers. 工具栏偶尔闪烁。"));
        if (agrees)
            press("applyscore_dialog_agree_upload_btn");
        settle(ShortMs);
    }
    void showPart(int row) const {
        press("applyscore_dialog_turn_btn");
        settle(ShortMs);
        dialog->findChild<QListWidget*>("sent_parts")->setCurrentRow(row);
    }
};

QImage paint(int score, const std::function<void(const Scene&)>& act, const QString& path = "",
             const QString& name = "Harbour Office") {
    const TestHome home;
    FakeBottleService service;
    service.start();
    const QString icon = home.path() + "/icon.png";
    sampleIcon(1, "H").save(icon);
    home.write("bottle.yml", "Name: office\nRunner: lumora-wine10-stable\nPath: " + home.path().toUtf8() +
                                 "/bottles/office\nWindows: win10\n");
    service.setBottle("office", {{"Path", home.path()},
                                 {"Windows", "win10"},
                                 {"Runner", "lumora-wine10-stable"},
                                 {"External_Programs", QJsonObject{{Uuid, QJsonObject{}}}}});
    HttpServer server;
    const QString base = server.address(path).chopped(1);
    server.files["appScore"] = R"({"status":200})";
    settingsStore()->setOption("feedback.cfg.base_url", path.isNull() ? QString() : base);
    settingsStore()->setOption("feedback.cfg.secret", "picture");
    Fenk::MainWindow window;
    window.resize(900, 720);
    window.show();
    Program program;
    program.ref = {"office", Uuid};
    program.setName(name);
    program.icon = icon;
    const QPointer<ApplyScoreDialog> dialog = ApplyScoreDialog::openFor(program, score, &window);
    settle(ShortMs);
    act({&server, dialog});
    settle(ShortMs);
    return dialog ? picture({&window, dialog}) : picture({&window});
}

}  // namespace

int main(int argc, char** argv) {
    const auto submit = [](const Scene& scene) { scene.press("applyscore_dialog_submit_btn"); };
    const auto fillAndSubmit = [submit](const Scene& scene) {
        scene.fill(false);
        submit(scene);
    };
    const auto showPart = [](int row) {
        return [row](const Scene& scene) {
            scene.fill();
            scene.showPart(row);
        };
    };
    return takePicture(argc, argv,
                       {{"empty", [] { return paint(0, [](const Scene&) {}); }},
                        {"chosen", [] { return paint(4, [](const Scene& scene) { scene.fill(false); }); }},
                        {"long-name",
                         [] {
                             return paint(
                                 4, [](const Scene&) {}, "",
                                 QString("Harbour Office for everybody ").repeated(9));
                         }},
                        {"sent", [=] { return paint(4, showPart(0)); }},
                        {"sent-file", [=] { return paint(4, showPart(3)); }},
                        {"sending", [=] { return paint(1, fillAndSubmit, "silent/"); }},
                        {"failed", [=] { return paint(2, fillAndSubmit, "other/"); }},
                        {"done", [=] { return paint(5, submit); }},
                        {"kept", [] {
                             return paint(
                                 3, [](const Scene&) {}, QString());
                         }}});
}
