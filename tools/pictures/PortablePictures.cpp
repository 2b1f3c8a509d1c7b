// Pictures of what is dropped and pasted in the library: portable-pictures STATE [--theme light|dark]
// --screenshot FILE. LANG chooses English or Chinese. Needs a session bus on which the name of the bottle
// service is free.
#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <functional>

#include "Pictures.h"
#include "shell/AddDispatcher.h"
#include "shell/IndexView.h"
#include "shell/Mainwindow.h"
#include "shell/configuration/executables/ChooseExecutableDialog.h"
#include "support/FakeBottleService.h"
#include "support/SmallProgram.h"

using TestSupport::FakeBottleService;

namespace {

const char Folder[] = "Harbour Office 2.1 Portable";

struct Scene {
    FakeBottleService* service;
    Mainwindow* window;
    QString directory;

    QString path(const QString& name) const { return directory + '/' + name; }
    QList<QWidget*> withDialog() const { return {window, QApplication::activeModalWidget()}; }
};

QList<QWidget*> progress(const Scene& scene) {
    scene.service->setHeld("Backup.importPortable", "{}");
    scene.window->addDispatcher()->addPortable(scene.path(Folder));
    settle(300);
    scene.service->emitSignal("/com/lumora/Manager/Backup", "com.lumora.Manager.Backup", "copyProgress",
                              "sxx", {scene.path(Folder), 412000000, 1240000000});
    settle(500);
    return scene.withDialog();
}

QList<QWidget*> failed(const Scene& scene, const QString& reasons) {
    scene.service->setText("Backup.importPortable", R"({"ok":false,"reasons":[)" + reasons + "]}");
    scene.window->addDispatcher()->addPortable(scene.path(Folder));
    settle(800);
    return scene.withDialog();
}

QList<QWidget*> choice(const Scene& scene, bool hasFailed) {
    const char* const programs[][2] = {{"Harbour Office", "HarbourOffice.exe"},
                                       {"Harbour Viewer", "viewer\\HarbourViewer.exe"},
                                       {"港口办公 打印助手", "tools\\print.exe"},
                                       {"HarbourUpdate", "HarbourUpdate.exe"},
                                       {"unins000", "unins000.exe"}};
    QVector<Executable> found;
    for (const auto& [name, file] : programs) {
        Executable executable;
        executable.name = QString::fromUtf8(name);
        executable.path = QString("C:\\Program Files\\%1\\%2").arg(Folder, file);
        executable.place = file;
        executable.isEntered = false;
        if (found.size() < 3)
            executable.images = {sampleIcon(found.size(), executable.name).toImage()};
        found += executable;
    }
    auto* dialog = new ChooseExecutableDialog(
        QCoreApplication::translate("PortableProgram", "Choose Programs of %1").arg(Folder), found,
        scene.window);
    dialog->setMessage(
        dialog->message() + "\n\n" +
        QCoreApplication::translate(
            "BottleCopy", "Not copied, since they lead out of the folder or are no ordinary files: %1")
            .arg(QLocale().createSeparatedList({"data/shared", "data/music"})));
    dialog->open();
    settle(300);
    if (hasFailed)
        dialog->showFailure(QCoreApplication::translate("PortableProgram", "%1 could not be added: %2")
                                .arg("Harbour Office", "No space left on the disk that holds /home/me."));
    settle(300);
    return {scene.window, dialog};
}

QList<QWidget*> taken(const Scene& scene, const QStringList& names) {
    QStringList paths;
    for (const QString& name : names)
        paths += name.startsWith('/') ? name : scene.path(name);
    scene.window->addDispatcher()->take(paths);
    settle(900);
    return scene.withDialog();
}

const struct {
    const char* name;
    std::function<QList<QWidget*>(const Scene&)> windows;
} States[] = {
    {"progress", progress},
    {"choice", [](const Scene& scene) { return choice(scene, false); }},
    {"choice-failed", [](const Scene& scene) { return choice(scene, true); }},
    {"protected",
     [](const Scene& scene) {
         return failed(scene, R"({"code":"protected-archive","arguments":["Harbour Office.zip"]})");
     }},
    {"no-programs",
     [](const Scene& scene) {
         return failed(scene, R"({"code":"no-programs","arguments":["Harbour Office"]})");
     }},
    {"several",
     [](const Scene& scene) {
         return taken(scene, {"Setup.exe", "Quartz Studio 2024.exe", "微信.exe"});
     }},
    {"refused",
     [](const Scene& scene) {
         return taken(scene, {Folder, "gone.exe"});
     }},
    {"looking", [](const Scene& scene) { return taken(scene, {"/proc"}); }},
    {"missing", [](const Scene& scene) { return taken(scene, {"gone.exe"}); }},
};

QImage paint(const std::function<QList<QWidget*>(const Scene&)>& windows) {
    const QTemporaryDir directory;
    FakeBottleService service;
    if (!service.start())
        return {};
    QDir(directory.path()).mkdir(Folder);
    for (const char* name : {"Setup.exe", "Quartz Studio 2024.exe", "微信.exe"}) {
        QFile file(directory.filePath(QString::fromUtf8(name)));
        if (!file.open(QIODevice::WriteOnly) || file.write(TestSupport::smallProgram()) < 0)
            return {};
    }
    Mainwindow window;
    window.show();
    window.activateWindow();
    settle(900);
    return picture(windows({&service, &window, directory.path()}));
}

}  // namespace

int main(int argc, char** argv) {
    QVector<PictureState> states;
    for (const auto& state : States)
        states.append({state.name, [&state] { return paint(state.windows); }});
    return takePicture(argc, argv, states);
}
