// Pictures of the dialogs that pack a bottle, with sample data: packaging-pictures STATE [--theme light|dark]
// --screenshot FILE. LANG chooses English or Chinese.
#include <QAbstractButton>
#include <QDir>
#include <QEventLoop>
#include <QJsonArray>
#include <QJsonObject>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>
#include <QTemporaryDir>

#include "Pictures.h"
#include "fenk/controls/LineEdit.h"
#include "fenk/window/Dialog.h"
#include "packaging/AppConfigDialog.h"
#include "packaging/config/PackageChecker.h"
#include "packaging/config/PackageFiles.h"
#include "packaging/driver/DoPackageDialog.h"
#include "packaging/driver/PackagePages.h"
#include "packaging/driver/PackagingFailure.h"
#include "packaging/start/BottleProgressDialog.h"

namespace {

QJsonObject program(const QString& name, const QString& path) {
    return {{"name", name}, {"path", path}};
}

enum class Form { Plain, End, Wrong, Details, Failed, Loading, Missing };

void write(const QString& path, qint64 bytes) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.resize(bytes);
}

const char Office[] = "0c1d2e3f-1111-4222-8333-444455556666";
const char Draw[] = "0c1d2e3f-1111-4222-8333-444455556667";
const char Mail[] = "0c1d2e3f-1111-4222-8333-444455556668";

/// A bottle that the packing script finds.
void fillBottle(const QString& place, bool isTooLarge) {
    for (const char* name : {"bottle.yml", "system.reg", "user.reg"})
        write(place + '/' + name, 0);
    QFile settings(place + "/bottle.yml");
    if (settings.open(QIODevice::WriteOnly))
        settings.write(QByteArray("External_Programs:\n  ") + Office + ": {name: Harbour Office}\n");
    const QString drive = place + "/drive_c/";
    write(drive + "Program Files/Harbour Office/office.exe", 181000000);
    write(drive + "Program Files/Common Files/spelling.dat", 42000000);
    write(drive + "windows/fonts/harbour.ttf", 900000);
    const QString profile = drive + "users/" + QString::fromLocal8Bit(qgetenv("USER")) + '/';
    for (const char* name : {"Documents/letter.doc", "Documents/sums.xls", "Temp/1.tmp",
                             "AppData/Roaming/Harbour/key4.db", "AppData/Roaming/Harbour/office.ini"})
        write(profile + name, 12000);
    if (isTooLarge)
        write(drive + "Program Files/Harbour Office/library.pak", 9LL << 30);
}

QImage form(Form kind) {
    const QTemporaryDir home;
    qputenv("XDG_DATA_HOME", home.path().toUtf8());
    qputenv("USER", "user");
    const QString bottle = home.filePath("lumora-wine-bottles/bottles/office");
    fillBottle(bottle, kind == Form::Failed);
    const QJsonObject programs{
        {Office, program("Harbour Office", bottle + "/drive_c/Program Files/Harbour Office/office.exe")},
        {Draw, program("Harbour Draw", "/srv/programs/Harbour/bin/draw.exe")},
        {Mail, program("Harbour Mail", "/srv/programs/Mail/mail.exe")}};
    PackageFiles(bottle).write(PackageFiles::InfoName, {{"appname", "Harbour Office"},
                                                        {"pkgname", "com.example.harbour"},
                                                        {"pkgversion", "7.2lumora1"},
                                                        {"category", "Office"},
                                                        {"pkgdesc", "Writes letters and reckons"}});
    PackageChecker checker;
    AppConfigDialog dialog("office", &checker);
    if (kind == Form::Missing)
        checker.take("office", {});
    else if (kind != Form::Loading)
        checker.take("office", {{"Path", bottle}, {"External_Programs", programs}});
    dialog.show();
    settle(1500);
    if (kind == Form::Wrong) {
        dialog.findChild<Fenk::LineEdit*>("package_pkgname")->setText("harbour");
        dialog.findChild<Fenk::LineEdit*>("package_pkgversion")->setText("beta");
        dialog.slotsValidateWidgets();
    } else if (kind == Form::End) {
        auto* bar = dialog.findChild<QScrollArea*>()->verticalScrollBar();
        bar->setValue(bar->maximum());
    } else if (kind == Form::Details) {
        dialog.findChild<QAbstractButton*>("package_contents_btn")->click();
    }
    settle(300);
    return picture({&dialog});
}

/// The question over a script that runs.
QImage closing() {
    const QTemporaryDir home;
    qputenv("XDG_DATA_HOME", home.path().toUtf8());
    qputenv("HOME", home.path().toUtf8());
    const QString bottle = home.filePath("lumora-wine-bottles/bottles/office");
    fillBottle(bottle, false);
    PackageFiles(bottle).write(
        PackageFiles::InfoName,
        {{"pkgname", "com.example.harbour"}, {"pkgversion", "1"}, {"arch", QJsonArray{"amd64"}}});
    PackageFiles(bottle).write(PackageFiles::SourceName, {{Office, QJsonObject{{"in_bottles", true}}}});
    DoPackageDialog dialog;
    QEventLoop loop;
    QObject::connect(&dialog, &DoPackageDialog::updateProgress, &loop, &QEventLoop::quit);
    dialog.start("office", "com.example.harbour", "1", home.path());
    dialog.show();
    loop.exec();
    dialog.reject();
    settle(300);
    return picture({&dialog, dialog.findChild<Fenk::Dialog*>()});
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
        PackagingFailure failure;
        failure.take("packager: cause running:");
        page->setReason(failure.text());
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
                       {{"form", [] { return form(Form::Plain); }},
                        {"first-start", [] { return firstStart(BottleProgressDialog::Work::Make); }},
                        {"update", [] { return firstStart(BottleProgressDialog::Work::Update); }},
                        {"form-end", [] { return form(Form::End); }},
                        {"wrong", [] { return form(Form::Wrong); }},
                        {"contents", [] { return form(Form::Details); }},
                        {"contents-failed", [] { return form(Form::Failed); }},
                        {"loading", [] { return form(Form::Loading); }},
                        {"missing", [] { return form(Form::Missing); }},
                        {"progress", [] { return progress(false); }},
                        {"details", [] { return progress(true); }},
                        {"closing", closing},
                        {"done", done},
                        {"failed", failed}});
}
