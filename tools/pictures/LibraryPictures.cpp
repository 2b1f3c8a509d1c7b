// Pictures of the library with sample data: library-pictures STATE [--theme light|dark] --screenshot FILE
// LANG chooses English or Chinese. Needs a session bus on which the name of the bottle service is free. A new
// state is a line in the table below.
#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMenu>
#include <QTemporaryDir>
#include <functional>

#include "Pictures.h"
#include "fenk/controls/SearchEdit.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "fenk/window/Application.h"
#include "fenk/window/Dialog.h"
#include "fenk/window/TitleBar.h"
#include "launch/records/FailedStarts.h"
#include "programs/OrphanedBottles.h"
#include "programs/ProgramStarts.h"
#include "shell/DropFrame.h"
#include "shell/IndexView.h"
#include "shell/Mainwindow.h"
#include "shell/associations/FileAssosiationsExportDialog.h"
#include "shell/library/AppLocalView.h"
#include "shell/library/BottleBackupActions.h"
#include "shell/library/BottleCopyDialog.h"
#include "shell/library/LocalAppItemWidget.h"
#include "shell/library/ProgramGrid.h"
#include "shell/library/ProgramLibrary.h"
#include "shell/library/RemovalQuestion.h"
#include "shell/properties/AppPropertyDlg.h"
#include "support/FakeBottleService.h"

using namespace Fenk;
using namespace TestSupport;

namespace {

const char* const Names[] = {"Harbour Office",
                             "微信",
                             "Notepad++ (x64)",
                             "7-Zip File Manager",
                             "网易云音乐",
                             "Blue Lagoon",
                             "企业微信",
                             "Quartz Studio 2024",
                             "The Very Long Name of a Program That Nobody Can Remember",
                             "迅捷屏幕录像工具专业版",
                             "Pixel Garden",
                             "Ledger",
                             "百度网盘",
                             "Tide Tables",
                             "Uplift"};

QString drawIcon(const QString& directory, int number, const QString& name) {
    const QString file = directory + QString("/icon%1.png").arg(number);
    sampleIcon(number, name).save(file);
    return file;
}

QString uuid(int number) {
    return QString("00000000-0000-4000-8000-%1").arg(number, 12, 10, QChar('0'));
}

QJsonArray programs(int count, const QString& directory) {
    QJsonArray list;
    const int known = int(std::size(Names));
    for (int i = 0; i < count; ++i) {
        QString name = QString::fromUtf8(Names[i % known]);
        if (i >= known)
            name += QString(" %1").arg(i / known + 1);
        list.append(QJsonObject{{"bottle_name", i % 5 ? "office" : "public/shared"},
                                {"name", name},
                                {"icon", i % 11 == 10 ? QString() : drawIcon(directory, i, name)},
                                {"stars", i % 6},
                                {"uuid", uuid(i)},
                                {"path", QString("C:\\Program Files\\Sample\\program%1.exe").arg(i)},
                                {"size", "3M"},
                                {"created_time", "2025-01-01 10:00:00"}});
    }
    return list;
}

struct Scene {
    FakeBottleService* service;
    Mainwindow* window;
    QString directory;  ///< of the bottles
    AppLocalView* view() const { return window->indexView()->localView(); }
    LocalAppItemWidget* tile(int position) const {
        ProgramGrid* grid = view()->shownGrid();
        return grid ? grid->tile(grid->programs().value(position)->ref) : nullptr;
    }
    void runs(const QString& signal, int position) const {
        const ProgramRef ref = tile(position)->ref();
        service->emitSignal("/com/lumora/Manager/Programs", "com.lumora.Manager.Programs", signal, "ss",
                            {ref.bottle, ref.uuid});
        settle(300);
    }
    void search(const QString& text) const {
        auto* edit = window->findChild<SearchEdit*>();
        edit->setFocus();
        edit->setText(text);
        settle(300);
    }
};

/// The windows as they lie over each other, the lowest first.
QList<QWidget*> plain(const Scene& scene) {
    return {scene.window};
}

QList<QWidget*> focused(const Scene& scene) {
    scene.view()->focusPrograms();
    QTimer::singleShot(0, scene.window, [] {});
    settle(100);
    ProgramStarts::instance()->start(*scene.tile(2)->program(), false);
    ProgramStarts::instance()->start(*scene.tile(8)->program(), false);
    return {scene.window};
}

QList<QWidget*> menu(const Scene& scene) {
    LocalAppItemWidget* tile = scene.tile(6);
    tile->setFocus();
    tile->onBtnOptionClicked();
    settle(400);
    QList<QWidget*> windows{scene.window};
    if (!tile->optionMenu() || !tile->optionMenu()->isVisible())
        return windows;
    windows << tile->optionMenu();
    for (QMenu* tools : tile->optionMenu()->findChildren<QMenu*>("quick_tools_menu")) {
        tile->optionMenu()->setActiveAction(tools->menuAction());
        settle(400);
        windows << tools;
    }
    return windows;
}

QList<QWidget*> removal(const Scene& scene) {
    RemovalQuestion::ask(*scene.tile(3)->program(), true, scene.window);
    settle(300);
    return {scene.window, QApplication::activeModalWidget()};
}

/// A backup as it goes on, and after the service has answered.
QList<QWidget*> backup(const Scene& scene, const QString& answer) {
    const QString file = scene.directory + "/Harbour Office 2026-01-02.cellarix-backup";
    if (answer.isEmpty())
        scene.service->setHeld("Backup.exportBottle", "{}");
    else
        scene.service->setText("Backup.exportBottle", answer);
    auto* copy = BottleCopy::backUp(*scene.tile(0)->program(), file);
    auto* dialog = new BottleCopyDialog(copy, scene.window);
    dialog->open();
    settle(300);
    if (answer.isEmpty())
        scene.service->emitSignal("/com/lumora/Manager/Backup", "com.lumora.Manager.Backup", "copyProgress",
                                  "sxx", {file, 412000000, 1240000000});
    settle(500);
    return {scene.window, dialog};
}

QList<QWidget*> restoreQuestion(const Scene& scene) {
    scene.service->setJson("Backup.describeBackup",
                           QJsonObject{{"ok", true},
                                       {"programs", QJsonArray{"Harbour Office", "微信", "Ledger"}},
                                       {"bytes", 1240000000},
                                       {"created", "2026-01-02T10:00:00Z"}});
    BottleBackupActions::restore(scene.window);
    settle(100);
    auto* chooser = scene.window->findChild<QFileDialog*>("restore_file_dialog");
    chooser->close();
    Q_EMIT chooser->fileSelected(scene.directory + "/a.cellarix-backup");
    settle(800);
    return {scene.window, QApplication::activeModalWidget()};
}

/// Of a program that was opened from a folder and runs, started by somebody else.
QList<QWidget*> removalOfRunning(const Scene& scene) {
    Program program = *scene.tile(3)->program();
    program.path = scene.directory + "/icon3.png";
    scene.service->setBottle(program.ref.bottle, {{"Path", "/usr/share/icons"}});
    scene.runs("started", 3);
    RemovalQuestion::ask(program, true, scene.window);
    settle(1500);
    return {scene.window, QApplication::activeModalWidget()};
}

/// One program runs that was started elsewhere, one has failed and has the focus, one has failed.
QList<QWidget*> states(const Scene& scene) {
    scene.runs("started", 2);
    for (const int position : {4, 7}) {
        const ProgramRef ref = scene.tile(position)->ref();
        FailedStarts::instance()->mark(
            ref.bottle, ref.uuid,
            {QCoreApplication::translate("Diagnosis", "It needs %1, which is part of %2. Repair installs it.")
                 .arg("mfc42.dll", "Visual C++ 6"),
             {"vcredist6"}});
    }
    scene.tile(7)->setFocus(Qt::TabFocusReason);
    settle(300);
    return {scene.window};
}

QList<QWidget*> failedMenu(const Scene& scene) {
    const QList<QWidget*> windows = states(scene);
    scene.tile(7)->onBtnOptionClicked();
    settle(400);
    return windows + QList<QWidget*>{scene.tile(7)->optionMenu()};
}

/// The package of most programs has been removed, and the files of one with it.
QList<QWidget*> orphans(const Scene& scene) {
    const ProgramRef lost = scene.tile(3)->ref();
    const QJsonObject bottle{
        {"bottle", lost.bottle}, {"package", "com.example.harbour"}, {"lost", QJsonArray{lost.uuid}}};
    scene.service->setJson("CleanUp.bottlesOfRemovedPackages", QJsonArray{bottle});
    OrphanedBottles::instance()->load();
    settle(300);
    return {scene.window};
}

QList<QWidget*> orphanQuestion(const Scene& scene) {
    const QList<QWidget*> windows = orphans(scene);
    scene.tile(3)->activate();
    settle(300);
    return windows + QList<QWidget*>{QApplication::activeModalWidget()};
}

QList<QWidget*> orphanMenu(const Scene& scene) {
    const QList<QWidget*> windows = orphans(scene);
    scene.tile(3)->onBtnOptionClicked();
    settle(400);
    return windows + QList<QWidget*>{scene.tile(3)->optionMenu()};
}

QList<QWidget*> refusedRemoval(const Scene& scene) {
    scene.service->setError("Bottles.removeExternalProgram", "busy");
    QWidget* question = removal(scene).last();
    static_cast<Dialog*>(question)->button(1)->click();
    settle(1000);
    return {scene.window};
}

QList<QWidget*> properties(const Scene& scene, int position) {
    const Program& program = *scene.tile(position)->program();
    scene.service->setBottle(
        program.ref.bottle,
        {{"External_Programs",
          QJsonObject{{program.ref.uuid, QJsonObject{{"name", program.name},
                                                     {"icon", program.icon},
                                                     {"path", "C:\\Program Files (x86)\\Sample & Sons\\" +
                                                                  program.name + "\\program.exe"}}}}}});
    AppPropertyDlg::openFor(*scene.tile(position)->program(), scene.window);
    settle(300);
    return {scene.window, QApplication::activeModalWidget()};
}

QList<QWidget*> editing(const Scene& scene) {
    const QList<QWidget*> windows = properties(scene, 2);
    windows.last()->findChild<QAbstractButton*>("property_name_pen")->click();
    settle(100);
    return windows;
}

/// A file that is no picture.
QList<QWidget*> refusedIcon(const Scene& scene) {
    const QList<QWidget*> windows = properties(scene, 8);
    windows.last()->findChild<QAbstractButton*>("property_icon")->click();
    auto* chooser = windows.last()->findChild<QFileDialog*>("property_icon_dialog");
    Q_EMIT chooser->fileSelected("/etc/passwd");
    chooser->close();
    settle(300);
    return windows;
}

QList<QWidget*> associations(const Scene& scene) {
    const ProgramRef program = scene.tile(8)->program()->ref;
    const QString directory = scene.directory;
    const char* const kinds[][2] = {{".cxt", "Harbour Office"},
                                    {".docx", "Harbour Office"},
                                    {".ledger", "Ledger 账本 2024"},
                                    {".mp3", "网易云音乐"},
                                    {"harbour", "Harbour Office"},
                                    {".qzs", "Quartz Studio 2024"},
                                    {".tide", "The Very Long Name of a Program That Nobody Can Remember"},
                                    {".xlsx", "Harbour Office"}};
    QJsonObject all;
    int number = 0;
    for (const auto& kind : kinds)
        all.insert(kind[0], QJsonObject{{"friendly_name", QString::fromUtf8(kind[1])},
                                        {"icon", drawIcon(directory, ++number, QString::fromUtf8(kind[1]))}});
    QFile file(directory + "/assosiate.json");
    if (file.open(QIODevice::WriteOnly))
        file.write(QJsonDocument(all).toJson());
    file.close();
    FileAssosiationsExportDialog::openFor(program, scene.window);
    settle(600);
    QWidget* dialog = QApplication::activeModalWidget();
    auto* list = dialog->findChild<QAbstractItemView*>("file_associations");
    for (const int row : {1, 3, 4})
        list->model()->setData(list->model()->index(row, 0), Qt::Checked, Qt::CheckStateRole);
    return {scene.window, dialog};
}

QList<QWidget*> drop(const Scene& scene) {
    scene.window->findChild<DropFrame*>()->show();
    return {scene.window};
}

QList<QWidget*> titleMenu(const Scene& scene) {
    scene.window->titlebar()->openMenu(true);
    settle(400);
    QMenu* menu = scene.window->titlebar()->menu();
    QList<QWidget*> windows{scene.window, menu};
    if (QMenu* themes = menu->findChild<QMenu*>("theme_menu")) {
        menu->setActiveAction(themes->menuAction());
        settle(400);
        windows << themes;
    }
    return windows;
}

QList<QWidget*> about(const Scene& scene) {
    static_cast<Fenk::Application*>(qApp)->handleAboutAction();
    settle(300);
    return {scene.window, QApplication::activeModalWidget()};
}

const struct {
    const char* name;
    int programs;  ///< -1: the service refuses
    std::function<QList<QWidget*>(const Scene&)> windows;
} States[] = {
    {"empty", 0, plain},
    {"few", 3, plain},
    {"many", 60, focused},
    {"search", 60,
     [](const Scene& scene) {
         scene.search("wx");
         return plain(scene);
     }},
    {"nothing", 60,
     [](const Scene& scene) {
         scene.search("qqq");
         return plain(scene);
     }},
    {"menu", 60, menu},
    {"title-menu", 60, titleMenu},
    {"about", 60, about},
    {"removal", 60, removal},
    {"backup", 60, [](const Scene& scene) { return backup(scene, {}); }},
    {"backup-done", 60, [](const Scene& scene) { return backup(scene, R"({"ok":true,"bytes":412000000})"); }},
    {"backup-busy", 60,
     [](const Scene& scene) { return backup(scene, R"({"ok":false,"busy":["微信","Ledger"]})"); }},
    {"backup-failed", 60,
     [](const Scene& scene) {
         return backup(scene,
                       R"({"ok":false,"reasons":[{"code":"disk-full","arguments":["/media/stick"]}]})");
     }},
    {"restore", 60, restoreQuestion},
    {"removal-running", 60, removalOfRunning},
    {"states", 60, states},
    {"states-menu", 60, failedMenu},
    {"package-removed", 60, orphanQuestion},
    {"package-removed-menu", 60, orphanMenu},
    {"removal-refused", 60, refusedRemoval},
    {"properties", 60,
     [](const Scene& scene) {
         const QList<QWidget*> windows = properties(scene, 8);
         windows.last()->findChild<QWidget*>("property_icon")->setFocus(Qt::TabFocusReason);
         settle(100);
         return windows;
     }},
    {"properties-editing", 60, editing},
    {"properties-refused", 60, refusedIcon},
    {"associations", 60, associations},
    {"drop", 60, drop},
    {"error", -1, plain},
};

bool waitUntilLoaded(const Scene& scene) {
    QElapsedTimer time;
    time.start();
    while (time.elapsed() < 10000) {
        settle(50);
        if (scene.view() && scene.view()->library()->state() != ProgramLibrary::State::Loading)
            return true;
    }
    return false;
}

QImage paint(int programCount, const std::function<QList<QWidget*>(const Scene&)>& windows) {
    const QTemporaryDir icons;
    FakeBottleService service;
    if (!service.start())
        return {};
    if (programCount < 0)
        service.setError("listAllPrograms", "the disk is on fire");
    else
        service.setJson("listAllPrograms", programs(programCount, icons.path()));
    service.setJson("Bottles.get", QJsonObject{{"Path", icons.path()},
                                               {"Runner", "lumora-wine10-stable"},
                                               {"External_Programs", QJsonObject{{"a", QJsonObject()}}}});
    Mainwindow window;
    window.show();
    window.activateWindow();
    const Scene scene{&service, &window, icons.path()};
    if (!waitUntilLoaded(scene))
        return {};
    settle(600);
    return picture(windows(scene));
}

}  // namespace

int main(int argc, char** argv) {
    QVector<PictureState> states;
    for (const auto& state : States)
        states.append({state.name, [&state] { return paint(state.programs, state.windows); }});
    return takePicture(argc, argv, states);
}
