// Pictures of the dialogs that pack a bottle, with sample data: packaging-pictures STATE [--theme light|dark]
// --screenshot FILE. LANG chooses English or Chinese.
#include <QJsonObject>
#include <QStackedWidget>
#include <QTemporaryDir>

#include "Pictures.h"
#include "fenk/controls/LineEdit.h"
#include "packaging/AppConfigDialog.h"
#include "packaging/config/PackageChecker.h"
#include "packaging/config/PackageFiles.h"
#include "packaging/driver/DoPackageDialog.h"
#include "packaging/driver/PackagePages.h"
#include "packaging/start/BottleProgressDialog.h"

namespace {

QJsonObject program(const QString& name, const QString& path) {
    return {{"name", name}, {"path", path}};
}

QImage form(bool isWrong) {
    const QTemporaryDir bottle;
    const QJsonObject programs{{"a", program("Harbour Office", bottle.filePath("drive_c/Office/office.exe"))},
                               {"b", program("Harbour Draw", "/srv/programs/Harbour/bin/draw.exe")},
                               {"c", program("Harbour Mail", "/srv/programs/Mail/mail.exe")}};
    PackageFiles(bottle.path())
        .write(PackageFiles::InfoName, {{"appname", "Harbour Office"},
                                        {"pkgname", "com.example.harbour"},
                                        {"pkgversion", "7.2lumora1"},
                                        {"category", "Office"},
                                        {"pkgdesc", "Writes letters and reckons"}});
    PackageChecker checker;
    checker.take("office", {{"Path", bottle.path()}, {"External_Programs", programs}});
    checker.select("b");
    checker.setDirectory("b", "/srv/programs/Harbour");
    AppConfigDialog dialog("office", &checker);
    if (isWrong) {
        dialog.findChild<Fenk::LineEdit*>("package_pkgversion")->setText("beta");
        dialog.slotsValidateWidgets();
    }
    dialog.show();
    settle(300);
    return picture({&dialog});
}

QImage progress(bool isUnfolded) {
    DoPackageDialog dialog;
    dialog.setTitle(DoPackageDialog::tr("Packaging application in progress ..."));
    Q_EMIT dialog.updateProgress(41.5);
    for (const char* line :
         {"listing the files of office", "left out (private): drive_c/users/a/Documents/letter",
          "packing 812 files and directories, 277 MiB"})
        dialog.slotsPackageOutput(line);
    dialog.show();
    isUnfolded ? dialog.slotsShowLogs() : dialog.slotsHideLogs();
    settle(300);
    return picture({&dialog});
}

template <class Page, class Fill>
QImage ended(Fill fill) {
    DoPackageDialog dialog;
    auto* page = dialog.findChild<Page*>();
    fill(page);
    dialog.findChild<QStackedWidget*>()->setCurrentWidget(page);
    dialog.show();
    dialog.slotsHideLogs();
    settle(300);
    return picture({&dialog});
}

QImage done() {
    return ended<ShowPackageDoneWidget>([](ShowPackageDoneWidget* page) {
        page->info()->setPackage("com.example.harbour", "7.2lumora1", "/home/user/Desktop");
    });
}

QImage failed() {
    return ended<ShowPackageFailedWidget>([](ShowPackageFailedWidget* page) {
        page->setReason("Programs run in the bottle. Close them and try again.");
    });
}

QImage firstStart(BottleProgressDialog::Work work) {
    BottleProgressDialog dialog("Harbour Office", work);
    dialog.setProgress(41.5);
    dialog.show();
    settle(300);
    return picture({&dialog});
}

}  // namespace

int main(int argc, char** argv) {
    return takePicture(argc, argv,
                       {{"form", [] { return form(false); }},
                        {"wrong", [] { return form(true); }},
                        {"first-start", [] { return firstStart(BottleProgressDialog::Work::Make); }},
                        {"update", [] { return firstStart(BottleProgressDialog::Work::Update); }},
                        {"progress", [] { return progress(false); }},
                        {"details", [] { return progress(true); }},
                        {"done", done},
                        {"failed", failed}});
}
