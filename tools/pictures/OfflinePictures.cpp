// Pictures of the dialogs that export and import components, with sample data: offline-pictures STATE
// [--theme light|dark] --screenshot FILE. LANG chooses English or Chinese. Needs a session bus on which the
// name of the bottle service is free.
#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QJsonArray>
#include <QTreeView>
#include <functional>
#include <memory>

#include "Pictures.h"
#include "shell/configuration/offline/OfflineComponentsExportDialog.h"
#include "shell/configuration/offline/OfflineComponentsHeaderView.h"
#include "shell/configuration/offline/OfflineComponentsImportDialog.h"
#include "support/FakeBottleService.h"

using namespace TestSupport;

namespace {

const QStringList Installed{
    "dotnet20",     "dotnet40",
    "vcredist2022", "a-component-with-a-very-long-name-that-hardly-fits-into-one-row-2026",
    "sqlite3",      "corefonts",
    "vbrun6",       "d3dcompiler_47"};

using Windows = QList<QWidget*>;

template <class Dialog>
Windows shown(const std::function<void(OfflineComponentsDialog*)>& change = {}) {
    QWidget* window = new QWidget;
    window->setWindowTitle("office");
    window->resize(900, 640);
    window->show();
    auto* dialog = new Dialog("office", window);
    dialog->show();
    dialog->activateWindow();
    settle(700);
    if (change) {
        change(dialog);
        settle(500);
    }
    return {window, dialog};
}

void tick(OfflineComponentsDialog* dialog, int row) {
    auto* list = dialog->findChild<QTreeView*>();
    Q_EMIT list->clicked(list->model()->index(row, 1));
    settle(200);
}

void choose(OfflineComponentsDialog* dialog, const char* button, const QStringList& files) {
    dialog->findChild<QAbstractButton*>(button)->click();
    auto* choice = dialog->findChild<QFileDialog*>();
    Q_EMIT choice->filesSelected(files);
    if (files.size() == 1)
        Q_EMIT choice->fileSelected(files.first());
    choice->close();
    settle(500);
}

void exportTo(OfflineComponentsDialog* dialog) {
    for (const int row : {1, 2, 3, 4})
        tick(dialog, row);
    dialog->button(1)->click();
    auto* choice = dialog->findChild<QFileDialog*>();
    Q_EMIT choice->fileSelected("/media/user/stick");
    choice->close();
    settle(300);
}

void tell(FakeBottleService* service, const QString& name, const QString& status,
          const QString& progress = {}) {
    service->emitSignal("/com/lumora/Manager/OfflineDependency", "com.lumora.Manager.OfflineDependency",
                        "notifyProgress", "ss",
                        {"export", QString(R"({"name":"%1","status":"%2","progress":"%3","reasons":[{"code":)"
                                           R"("no-connection","arguments":["sqlite.zip","sqlite.org"]}]})")
                                       .arg(name, status, progress)});
}

Windows chosen(FakeBottleService*) {
    return shown<OfflineComponentsExportDialog>([](OfflineComponentsDialog* dialog) {
        tick(dialog, 1);
        tick(dialog, 2);
        dialog->findChild<OfflineComponentsHeaderView*>()->setFocus(Qt::TabFocusReason);
    });
}

Windows exporting(FakeBottleService* service) {
    return shown<OfflineComponentsExportDialog>([service](OfflineComponentsDialog* dialog) {
        exportTo(dialog);
        tell(service, "dotnet40", "downloading", "42%");
        tell(service, Installed[3], "ok");
        tell(service, "dotnet20", "ok");
        tell(service, "sqlite3", "failed");
    });
}

Windows exported(FakeBottleService* service) {
    return shown<OfflineComponentsExportDialog>([service](OfflineComponentsDialog* dialog) {
        exportTo(dialog);
        for (const QString& name : Installed.mid(0, 5))
            tell(service, name, "ok");
    });
}

Windows failed(FakeBottleService* service) {
    return shown<OfflineComponentsExportDialog>([service](OfflineComponentsDialog* dialog) {
        exportTo(dialog);
        for (const QString& name : Installed.mid(0, 4))
            tell(service, name, "ok");
        tell(service, "sqlite3", "failed");
    });
}

Windows nothing(FakeBottleService* service) {
    service->setBottle("office", {});
    return shown<OfflineComponentsExportDialog>();
}

Windows tip(FakeBottleService*) {
    return shown<OfflineComponentsImportDialog>();
}

Windows import(FakeBottleService*) {
    return shown<OfflineComponentsImportDialog>([](OfflineComponentsDialog* dialog) {
        choose(dialog, "offline_import_choose", {"/a.tar", "/b.tar"});
    });
}

Windows missing(FakeBottleService* service) {
    service->setJson("checkDeps", QJsonObject{{"valid", QJsonArray{"sqlite3"}},
                                              {"missing", QJsonObject{{"dotnet40", QJsonArray{"dotnet20"}},
                                                                      {"vbrun6sp6", QJsonArray{"vbrun6"}}}}});
    const Windows windows = import(service);
    return windows + Windows{QApplication::activeModalWidget()};
}

Windows busy(FakeBottleService* service) {
    const QJsonArray names{"Harbour Office, Notes", "Harbour Office", "Notes"};
    service->setAnswers("importDeps",
                        {{{"error", "Programs run in the bottle."},
                          {"errorName", "com.lumora.Error.Busy"},
                          {"reasons", QJsonArray{QJsonObject{{"code", "busy"}, {"arguments", names}}}}}});
    const Windows windows = import(service);
    static_cast<OfflineComponentsDialog*>(windows.last())->button(1)->click();
    settle(500);
    return windows + Windows{QApplication::activeModalWidget()};
}

QImage paint(Windows (*windows)(FakeBottleService*)) {
    FakeBottleService service;
    if (!service.start())
        return {};
    service.setText("isExporting", "false");
    service.setText("isImporting", "false");
    service.setText("getDependencies", "[]");
    service.setText("getDependencies:dotnet40", R"(["dotnet20"])");
    service.setJson("checkDeps", QJsonObject{{"valid", QJsonArray::fromStringList(Installed.mid(0, 5))}});
    service.setBottle("office", {{"Installed_Dependencies", QJsonArray::fromStringList(Installed)}});
    const Windows all = windows(&service);
    const QImage image = picture(all);
    delete all.first();
    return image;
}

}  // namespace

int main(int argc, char** argv) {
    const struct {
        const char* name;
        Windows (*windows)(FakeBottleService*);
    } states[] = {{"chosen", chosen}, {"exporting", exporting}, {"exported", exported},
                  {"failed", failed}, {"nothing", nothing},     {"tip", tip},
                  {"import", import}, {"missing", missing},     {"busy", busy}};
    QVector<PictureState> pictures;
    for (const auto& state : states)
        pictures.append({state.name, [&state] { return paint(state.windows); }});
    return takePicture(argc, argv, pictures);
}
