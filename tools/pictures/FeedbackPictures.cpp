// Pictures of the feedback dialog with sample data: feedback-pictures STATE [--theme light|dark]
// --screenshot FILE. LANG chooses English or Chinese. A new state is a line in the table below.
#include <QCheckBox>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>

#include "Pictures.h"
#include "core/base/SettingsStore.h"
#include "feedback/dialogs/FeedBackDialog.h"
#include "feedback/dialogs/ImageUploads.h"
#include "feedback/dialogs/UploadedImage.h"
#include "fenk/window/MainWindow.h"
#include "support/FakeBottleService.h"
#include "support/HttpServer.h"
#include "support/TestHome.h"

using namespace TestSupport;

namespace {

constexpr int ShortMs = 600;
const char Types[] = R"({"status":200,"datas":[
    {"id":"1","name":"无法安装","enName":"Cannot be installed"},{"id":"2","name":"无法启动","enName":"Does not start"},
    {"id":"3","name":"运行中崩溃","enName":"Crashes while it runs"},{"id":"4","name":"显示异常","enName":"Looks wrong"},
    {"id":"5","name":"运行缓慢","enName":"Slow"},{"id":"6","name":"其他","enName":"Something else"}]})";

struct Scene {
    const TestHome* home;
    HttpServer* server;
    FeedBackDialog* dialog;

    template <class Widget>
    Widget* find(const char* name) const {
        return dialog->findChild<Widget*>(name);
    }
    void setUpload(const QString& path) const {
        server->files["getUploadInfo"] =
            QJsonDocument(QJsonObject{{"status", 200},
                                      {"datas", QJsonArray{QJsonObject{{"upload_url", server->address(path)},
                                                                       {"file_key", "reports/3f7c"}}}}})
                .toJson();
    }
    void fill() const {
        if (auto* box = find<QCheckBox>("feedback_type_1"))
            box->setChecked(true);
        find<QPlainTextEdit>("feedback_description")
            ->setPlainText(
                QString::fromUtf8("The window stays white after “Open…”. 打开文件后窗口是空白的。"));
        find<QLineEdit>("feedback_downloadurl")->setText("https://harbour.example/download/office.exe");
        find<QLineEdit>("feedback_contact")->setText("ann@harbour.example");
    }
    void addImages(int count) const {
        QStringList files;
        for (int i = 0; i < count; ++i) {
            files += home->path() + QString("/shot%1.png").arg(i);
            sampleIcon(i, QString('A' + i)).scaled(640, 480).save(files.last());
        }
        dialog->findChild<ImageUploads*>()->add(files);
        settle(ShortMs);
    }
    void toEnd() const {
        QScrollBar* bar = find<QScrollArea>("feedback_scrollarea")->verticalScrollBar();
        bar->setValue(bar->maximum());
    }
    void press(const char* name) const {
        auto* button = find<QPushButton>(name);
        button->setFocus(Qt::TabFocusReason);
        button->click();
        settle(ShortMs);
    }
    void showPart(int row) const {
        fill();
        addImages(2);
        press("feedback_turnbtn");
        settle(3 * ShortMs);
        find<QListWidget>("sent_parts")->setCurrentRow(row);
    }
};

enum class Service { Answers, LongTypes, Silent, Missing };

QImage paint(const std::function<void(const Scene&)>& act, Service kind = Service::Answers) {
    const TestHome home;
    FakeBottleService service;
    service.start();
    home.write("logs/wine-program-00000000-0000-4000-8000-000000000001.txt",
               "0024:err:module:import_dll Library MSVCP140.dll (which is needed by L\"C:\\\\office.exe\") "
               "not found\n"
               "0024:err:module:LdrInitializeThunk Importing dlls for L\"C:\\\\office.exe\" failed\n");
    home.write("bottle.yml", "Name: office\nRunner: lumora-wine\nWindows: win10\n");
    service.setBottle("office", {{"Path", home.path()}, {"Runner", "lumora-wine"}, {"Windows", "win10"}});
    HttpServer server;
    server.files["put"] = "";
    server.files["feedback"] = R"({"status":200})";
    if (kind == Service::Answers)
        server.files["issueTypeDef"] = Types;
    else if (kind == Service::LongTypes)
        server.files["issueTypeDef"] = QByteArray(Types)
                                           .replace("Slow", QByteArray(50, 'W'))
                                           .replace("be installed", "be installed & set up");
    settingsStore()->setOption("feedback.cfg.secret", "sample");
    settingsStore()->setOption("feedback.cfg.base_url",
                               kind == Service::Missing ? QString() : server.address({}).chopped(1));
    Fenk::MainWindow window;
    window.resize(950, 760);
    window.show();
    FeedBackDialog dialog({"office", {}}, &window);
    dialog.setAppName("Harbour Office");
    dialog.setAppVersion("4.2.0.118");
    const Scene scene{&home, &server, &dialog};
    scene.setUpload("put");
    dialog.open();
    settle(ShortMs);
    act(scene);
    settle(ShortMs);
    return dialog.isVisible() ? picture({&window, &dialog}) : picture({&window});
}

const QVector<PictureState> States = {
    {"empty", [] { return paint([](const Scene&) {}); }},
    {"filled", [] { return paint([](const Scene& scene) { scene.fill(); }); }},
    {"long-types", [] { return paint([](const Scene&) {}, Service::LongTypes); }},
    {"images",
     [] {
         return paint([](const Scene& scene) {
             scene.fill();
             scene.addImages(6);
             scene.toEnd();
             scene.dialog->findChild<UploadedImage*>("uploaded_image_1")->setFocus(Qt::TabFocusReason);
         });
     }},
    {"uploading",
     [] {
         return paint([](const Scene& scene) {
             scene.fill();
             scene.setUpload("gone");
             scene.addImages(1);
             scene.setUpload("silent/put");
             scene.addImages(3);
             scene.toEnd();
             scene.dialog->findChild<UploadedImage*>("uploaded_image_0")->setFocus(Qt::TabFocusReason);
         });
     }},
    {"contact",
     [] {
         return paint([](const Scene& scene) {
             scene.fill();
             scene.find<QLineEdit>("feedback_contact")->setText("ann at harbour");
             scene.press("feedback_submitbtn");
         });
     }},
    {"sent", [] { return paint([](const Scene& scene) { scene.showPart(0); }); }},
    {"sent-log", [] { return paint([](const Scene& scene) { scene.showPart(5); }); }},
    {"sent-picture", [] { return paint([](const Scene& scene) { scene.showPart(2); }); }},
    {"sending",
     [] {
         return paint([](const Scene& scene) {
             scene.fill();
             scene.setUpload("silent/put");
             scene.press("feedback_submitbtn");
             settle(3 * ShortMs);
         });
     }},
    {"failed",
     [] {
         return paint([](const Scene& scene) {
             scene.fill();
             scene.server->files["feedback"] = R"({"status":429,"desc":"Too many reports today"})";
             scene.press("feedback_submitbtn");
             settle(3 * ShortMs);
         });
     }},
    {"done",
     [] {
         return paint([](const Scene& scene) {
             scene.fill();
             scene.press("feedback_submitbtn");
             settle(3 * ShortMs);
         });
     }},
    {"offline", [] { return paint([](const Scene& scene) { scene.fill(); }, Service::Silent); }},
    {"without-service",
     [] {
         return paint(
             [](const Scene& scene) {
                 scene.fill();
                 scene.addImages(2);
             },
             Service::Missing);
     }},
    {"saved", [] { return paint([](const Scene& scene) { scene.showPart(0); }, Service::Missing); }},
};

}  // namespace

int main(int argc, char** argv) {
    return takePicture(argc, argv, States);
}
