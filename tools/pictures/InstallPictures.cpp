// Pictures of an installation from the store with sample data: install-pictures STATE [--theme light|dark]
// --screenshot FILE. LANG chooses English or Chinese. A new state is a line in the table below.
#include <QAbstractButton>
#include <QApplication>
#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QTemporaryDir>

#include "Pictures.h"
#include "fenk/style/Theme.h"
#include "fenk/window/MainWindow.h"
#include "launch/banner/BannerCloseConfirmDialog.h"
#include "store/install/FileSelectWidget.h"
#include "store/install/SetupAppInfoDialog.h"
#include "store/install/YamlProgramInstaller.h"
#include "store/install/YamlProgramInstallerBanner.h"
#include "support/FakeBottleService.h"
#include "support/FakePackages.h"
#include "support/HttpServer.h"
#include "support/PrivateBus.h"

using namespace TestSupport;

namespace {

constexpr int ShortMs = 600;
constexpr int DownloadMs = 900;

SetupAppInfo sampleInfo() {
    return {QString::fromUtf8("Harbour Office Professional 海港办公"),
            "7.4.2",
            "https://harbour.example/",
            "https://harbour.example/download/Harbour-Office-Professional-7.4.2-x64.exe",
            "84M",
            "Ann Harbour",
            "ann@harbour.example",
            "lumora-wine8-stable",
            "fonts-wqy-microhei, libodbc1"};
}

/// The dialog over a window, with what is done in it.
QImage dialog(const QString& wine, const ManifestFacts& manifest,
              const std::function<void(SetupAppInfoDialog*)>& act, const QString& url = {}) {
    const TestHome home;
    const FakePackages packages(home, "lumora-wine8-stable", "archived-wine");
    FakeBottleService service;
    service.start();
    service.setJson("Components.list",
                    QJsonObject{{"runner", QJsonObject{{"installed", QJsonArray{"lumora-wine10-stable"}}}}});
    Fenk::MainWindow window;
    window.resize(900, 860);
    window.show();
    SetupAppInfo info = sampleInfo();
    info.winePackage = wine;
    if (!url.isEmpty())
        info.downloadUrl = url;
    SetupAppInfoDialog dialog(info, manifest, &window);
    dialog.open();
    settle(ShortMs);
    act(&dialog);
    return picture({&window, &dialog});
}

QImage plain(const QString& wine) {
    return dialog(wine, {}, [](SetupAppInfoDialog*) {});
}

QImage compared(bool isRight) {
    ManifestFacts manifest;
    manifest.setupSha256 = QCryptographicHash::hash("MZ", QCryptographicHash::Sha256).toHex();
    return dialog("lumora-wine8-stable", manifest, [isRight](SetupAppInfoDialog* dialog) {
        const QTemporaryDir directory;
        QFile file(directory.path() + "/Harbour-Office-Professional-7.4.2-x64.exe");
        file.open(QIODevice::WriteOnly);
        file.write(isRight ? "MZ" : "MZ, an older one");
        file.close();
        dialog->findChild<FileSelectWidget*>()->setFile(file.fileName());
        settle(ShortMs);
    });
}

void press(QWidget* window, const QString& name) {
    for (auto* button : window->findChildren<QAbstractButton*>()) {
        if (button->accessibleName() == name)
            button->click();
    }
}

QImage commands() {
    ManifestFacts manifest;
    manifest.commands = {
        {"regsvr32", {"/s", "C:\\Program Files\\Common Files\\harbour.dll"}, "Registers the viewer"},
        {"C:\\windows\\regedit.exe", {"/S", "C:\\harbour settings.reg"}, {}}};
    return dialog("lumora-wine8-stable", manifest, [](SetupAppInfoDialog* dialog) {
        press(dialog, "show_commands_btn");
        settle(ShortMs);
    });
}

QImage downloading(bool isFailed) {
    HttpServer server;
    server.files["setup.exe"] = "MZ" + QByteArray(40 << 20, 'x');
    return dialog(
        "lumora-wine8-stable", {},
        [](SetupAppInfoDialog* dialog) {
            press(dialog, "download_btn");
            settle(DownloadMs);
        },
        server.address(isFailed ? "gone.exe" : "stalled/setup.exe"));
}

/// The banner of an installer whose service does as it is told.
QImage banner(const std::function<QList<QWidget*>(FakeBottleService*, YamlProgramInstallerBanner*)>& act) {
    const TestHome home;
    FakeBottleService service;
    service.start();
    YamlProgramInstaller installer("program-7", {}, home.write("setup.exe", "MZ"));
    installer.setDisplayName(sampleInfo().appName);
    installer.setIcon(Fenk::Theme::icon("cxb_app_default_icon"));
    installer.start();
    service.waitForCall("setupYaml");
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (auto* found = qobject_cast<YamlProgramInstallerBanner*>(window))
            return picture(act(&service, found));
    }
    return {};
}

void tell(FakeBottleService* service, const QString& signal, const QString& signature,
          const QJsonArray& arguments) {
    service->emitSignal("/com/lumora/Manager/InstallerManager", "com.lumora.Manager.InstallerManager", signal,
                        signature, arguments);
}

QList<QWidget*> components(FakeBottleService* service, YamlProgramInstallerBanner* banner) {
    tell(service, "setupTitleChanged", "ss", {"program-7", "Installing vcredist2019"});
    tell(service, "setupProgressChanged", "sii", {"program-7", 3, 7});
    tell(service, "setupDescriptionChanged", "ssi",
         {"program-7", "Downloading vc_redist.x64.exe: 11.2 MiB of 24.1 MiB", 1});
    settle(2000);
    return {banner};
}

QList<QWidget*> question(FakeBottleService* service, YamlProgramInstallerBanner* banner) {
    components(service, banner);
    banner->close();
    settle(ShortMs);
    return {banner, banner->findChild<BannerCloseConfirmDialog*>()};
}

QList<QWidget*> failed(FakeBottleService* service, YamlProgramInstallerBanner* banner) {
    tell(service, "setupFailed", "ss",
         {"program-7", R"({"ok":false,"reasons":[{"code":"http-status","arguments":["vcredist2019.exe",)"
                       R"("https:\/\/files.example","404"]}]})"});
    settle(2000);
    return {banner};
}

const QVector<PictureState> States{
    {"dialog", [] { return plain("lumora-wine8-stable"); }},
    {"dialog-missing", [] { return plain("archived-wine"); }},
    {"dialog-replaced", [] { return plain("wine-of-a-store"); }},
    {"dialog-expected", [] { return compared(true); }},
    {"dialog-other", [] { return compared(false); }},
    {"dialog-commands", commands},
    {"dialog-downloading", [] { return downloading(false); }},
    {"dialog-download-failed", [] { return downloading(true); }},
    {"begin",
     [] {
         return banner([](FakeBottleService*, YamlProgramInstallerBanner* shown) -> QList<QWidget*> {
             return {shown};
         });
     }},
    {"setup", [] { return banner(components); }},
    {"cancel", [] { return banner(question); }},
    {"failed", [] { return banner(failed); }},
};

}  // namespace

int main(int argc, char** argv) {
    const PrivateBus bus;  // before the application, which connects to it
    return takePicture(argc, argv, States);
}
