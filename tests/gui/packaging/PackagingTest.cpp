#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QFileDialog>
#include <QJsonObject>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QStackedWidget>
#include <QTreeWidget>
#include <QtTest>
#include <memory>

#include "backend/ProgramRef.h"
#include "core/base/Paths.h"
#include "core/base/SettingsStore.h"
#include "fenk/controls/FloatingMessage.h"
#include "fenk/controls/LineEdit.h"
#include "fenk/window/Application.h"
#include "fenk/window/Dialog.h"
#include "packaging/AppConfigDialog.h"
#include "packaging/config/PackageChecker.h"
#include "packaging/config/PackageMaintainer.h"
#include "packaging/config/ShowPackageCheckerWidget.h"
#include "packaging/contents/PackageContentsWidget.h"
#include "packaging/contents/PackageListing.h"
#include "packaging/driver/DoPackageDialog.h"
#include "packaging/driver/PackagePages.h"
#include "packaging/driver/SaveDirectory.h"
#include "support/EnvironmentGuard.h"
#include "support/FakeBottleService.h"
#include "support/KeyWalk.h"
#include "support/LogCapture.h"
#include "support/PrivateBus.h"
#include "support/Table.h"
#include "support/TestHome.h"

using namespace TestSupport;

namespace {
const char Id[] = "0c1d2e3f-1111-4222-8333-444455556666";
const char Registry[] = "WINE REGISTRY Version 2\n;; All keys relative to REGISTRY\\\\Machine\n\n";
const char Pkginfo[] = R"({"appname": "Sample", "pkgname": "com.example.sample", "pkgversion": "1.0",
    "arch": ["amd64"]})";
const char Pkgsrc[] =
    R"({"0c1d2e3f-1111-4222-8333-444455556666": {"path": "C:\\a.exe", "in_bottles": true}})";
const char Settings[] =
    "Name: t\nExternal_Programs:\n  0c1d2e3f-1111-4222-8333-444455556666:\n    path: 'C:\\a.exe'\n";
}  // namespace

/// Packs with the installed script.
class PackagingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void progressLines_data();
    void progressLines();
    void causesOfFailuresAreTold();
    void theSaveDirectoryFallsBackToTheDesktop();
    void progressNeverRunsBackwards();
    void aBottleBecomesAPackage();
    void aFailureTellsItsReason();
    void closingAsksAndCancelKeepsTheScriptRunning();
    void theWindowBelowMayGo();
    void theFormRefusesAndSaves();
    void theFormAsksTheService();

private:
    QString bottle(const QString& name, qint64 noise = 0);
    static QString textOf(QWidget* widget);  ///< of all labels
    void answerQuestion(QDialog* dialog, int button);
    QStackedWidget* pages(QWidget* dialog) { return dialog->findChild<QStackedWidget*>(); }
    QString logs() const { return m_home.path() + "/.cache/cellarix/pkglogs/"; }

    TestHome m_home;
};

void PackagingTest::initTestCase() {
    QCoreApplication::setApplicationName("packaging-test");
    QVERIFY(QDir().mkpath(m_home.desktop()));
    if (!QFileInfo::exists(Paths::packagerScript()))
        QSKIP("needs the installed tree");
}

void PackagingTest::answerQuestion(QDialog* dialog, int button) {
    dialog->reject();
    dialog->reject();  // does not ask twice
    auto questions = dialog->findChildren<Fenk::Dialog*>();
    QCOMPARE(questions.size(), 1);
    const QPointer<Fenk::Dialog> question(questions.first());
    question->button(button)->click();
    QTRY_VERIFY(!question);
}

QString PackagingTest::textOf(QWidget* widget) {
    QStringList texts;
    for (const QLabel* label : widget->findChildren<QLabel*>())
        texts += label->text();
    return texts.join('\n');
}

QString PackagingTest::bottle(const QString& name, qint64 noise) {
    const QString place = ".local/share/lumora-wine-bottles/bottles/" + name + '/';
    m_home.write(place + "system.reg", Registry);
    m_home.write(place + "user.reg", Registry);
    m_home.write(place + "bottle.yml", Settings);
    m_home.write(place + "pkgcfg/pkginfo.json", Pkginfo);
    m_home.write(place + "drive_c/a.exe", "MZ");
    QByteArray bytes(int(noise), '\0');
    std::generate(bytes.begin(), bytes.end(), [] { return char(QRandomGenerator::global()->generate()); });
    m_home.write(place + "drive_c/noise", bytes);
    return m_home.write(place + "pkgcfg/pkgsrc.json", Pkgsrc);
}

void PackagingTest::progressLines_data() {
    const Table<QString, double> row("line", "percent");
    row("half", "::progress:: 41.5", 41.5);
    row("none", "progress 41", -1);
    row("no number", "::progress:: much", -1);
    row("too much", "::progress:: 1e9", -1);
}

void PackagingTest::progressLines() {
    QFETCH(QString, line);
    QTEST(PackagingRun::progressOf(line), "percent");
}

void PackagingTest::causesOfFailuresAreTold() {
    PackagingFailure failure;
    QVERIFY(!failure.take("cause changed: x"));
    QCOMPARE(failure.text(), QString());
    QVERIFY(failure.take("packager: cause too-large: 10.4"));
    QVERIFY(failure.text().contains("10.4 GB"));
    QVERIFY(failure.take("packager: cause changed: C: %1 x"));
    QVERIFY(failure.text().contains("The file C: %1 x has"));
    for (const char* cause : {"no-architecture", "no-program", "program-gone", "installing", "running",
                              "bottle-busy", "compressor", "internal"}) {
        QVERIFY(failure.take(QString("packager: cause %1: ").arg(cause).trimmed()));
        QVERIFY2(!failure.text().isEmpty(), cause);
    }
    QVERIFY(failure.take("packager: cause none: x"));
    QCOMPARE(failure.text(), QString());
}

void PackagingTest::theSaveDirectoryFallsBackToTheDesktop() {
    const LogCapture log;
    const QString file = m_home.write("file", "");
    settingsStore()->setOption("basic.deb_save_path.", file);
    QString found;
    SaveDirectory::find(this, [&found](const QString& path) { found = path; });
    QTRY_COMPARE(found, m_home.desktop());
    QCOMPARE(settingsStore()->getOption("basic.deb_save_path.").toString(), m_home.desktop());
    QVERIFY(log.contains("savePath " + file + "not a dir & writable, try to create it"));
    QVERIFY(log.contains("not writable, try to use desktop"));
    const QString missing = m_home.path() + "/missing";
    QCOMPARE(SaveDirectory::usable(file, missing), missing);
    QVERIFY(QFileInfo(missing).isDir());
    const QString fresh = m_home.path() + "/a/b";
    QCOMPARE(SaveDirectory::usable(fresh, {}), fresh);
}

void PackagingTest::progressNeverRunsBackwards() {
    ShowPackagingProgressWidget page;
    auto* bar = page.findChild<QProgressBar*>("package_progressbar");
    for (const double percent : {41.5, 7.0})
        page.setProgress(percent);
    QCOMPARE(bar->value(), 41);
}

void PackagingTest::aBottleBecomesAPackage() {
    bottle("t");
    DoPackageDialog dialog;
    dialog.start("t", "com.example.sample", "1.0", logs());
    dialog.show();
    QTRY_VERIFY_WITH_TIMEOUT(qobject_cast<ShowPackageDoneWidget*>(pages(&dialog)->currentWidget()), 60000);
    const QString package = m_home.desktop() + "/com.example.sample_1.0_amd64.deb";
    QCOMPARE(SaveDirectory::newestPackage(m_home.desktop(), "com.example.sample"), package);
    QVERIFY(readFile(logs() + "package.log").contains("packed: " + package.toUtf8()));

    const QString next = m_home.path() + "/next";
    QVERIFY(QDir().mkpath(next));
    dialog.findChild<QAbstractButton*>("package_change_path_btn")->click();
    Q_EMIT dialog.findChild<QFileDialog*>()->fileSelected(next);
    QTRY_VERIFY(dialog.findChild<Fenk::Dialog*>());
    QVERIFY(dialog.findChild<Fenk::Dialog*>()->message().endsWith(next));
    QCOMPARE(settingsStore()->getOption("basic.deb_save_path.").toString(), next);
    settingsStore()->setOption("basic.deb_save_path.", m_home.desktop());
    QVERIFY(dialog.close());
}

void PackagingTest::aFailureTellsItsReason() {
    QVERIFY(QFile::remove(bottle("empty")));
    DoPackageDialog dialog;
    dialog.start("empty", "com.example.sample", "1.0", logs());
    auto* failed = dialog.findChild<ShowPackageFailedWidget*>();
    QTRY_COMPARE_WITH_TIMEOUT(pages(&dialog)->currentWidget(), failed, 60000);
    QVERIFY2(textOf(failed).contains("Fill in the form"), qPrintable(textOf(failed)));
}

void PackagingTest::closingAsksAndCancelKeepsTheScriptRunning() {
    bottle("large", 24 << 20);
    QFile::remove(m_home.desktop() + "/com.example.sample_1.0_amd64.deb");
    DoPackageDialog dialog;
    QSignalSpy progress(&dialog, &DoPackageDialog::updateProgress);
    dialog.start("large", "com.example.sample", "1.0", logs());
    dialog.show();
    QVERIFY(progress.wait(60000));
    answerQuestion(&dialog, 0);
    QVERIFY(dialog.isVisible());
    QVERIFY(progress.wait(60000));
    answerQuestion(&dialog, 1);
    QTRY_VERIFY_WITH_TIMEOUT(!dialog.isVisible(), 60000);
    QCOMPARE(QDir(m_home.desktop()).entryList(QDir::Files | QDir::Hidden), QStringList());
}

void PackagingTest::theWindowBelowMayGo() {
    bottle("orphan", 24 << 20);
    auto* window = new QWidget;
    auto* dialog = new DoPackageDialog(window);
    QSignalSpy progress(dialog, &DoPackageDialog::updateProgress);
    dialog->start("orphan", "com.example.sample", "1.0", logs());
    dialog->open();
    QVERIFY(progress.wait(60000));
    dialog->reject();  // asks
    delete window;
    QCOMPARE(QDir(m_home.desktop()).entryList(QDir::Files | QDir::Hidden), QStringList());
}

void PackagingTest::theFormRefusesAndSaves() {
    const QString directory = QFileInfo(QFileInfo(bottle("form")).path()).path();
    const QString outside = m_home.write("games/Suite/b.exe", "MZ");
    PackageChecker checker;
    AppConfigDialog dialog("form", &checker);
    checker.take("form",
                 {{"Path", directory},
                  {"External_Programs", QJsonObject{{Id, QJsonObject{{"name", "B"}, {"path", outside}}}}}});
    dialog.show();
    QCOMPARE(dialog.width(), 500);
    auto* name = dialog.findChild<Fenk::LineEdit*>("package_pkgname");
    auto* version = dialog.findChild<Fenk::LineEdit*>("package_pkgversion");
    auto* ok = dialog.findChild<QAbstractButton*>("package_okbtn");
    QTRY_COMPARE(name->text(), QString("com.example.sample"));  // from the file
    name->lineEdit()->clear();
    QTest::keyClicks(name->lineEdit(), "A-b");
    QCOMPARE(name->text(), QString("b"));
    QTRY_COMPARE(name->alertMessage(), QString("At least 2 characters"));  // while typing
    ok->click();
    QCOMPARE(name->alertMessage(), QString("At least 2 characters"));
    name->setText("a.b");
    version->setText("x1");
    ok->click();
    QCOMPARE(version->alertMessage(), QString("Your input is not a valid package version"));
    version->setText("2.0A");
    auto* arm = dialog.findChild<QCheckBox*>("package_arm_arch");
    QVERIFY(!arm->isChecked());
    dialog.findChild<QCheckBox*>("package_x86_arch")->click();  // the last one stays
    checker.unselect(Id);
    QTRY_COMPARE(checker.selectedCount(), 0);
    ok->click();  // no program is chosen
    auto* warning = dialog.findChild<Fenk::Dialog*>();
    QVERIFY(warning && warning->title() == "缺少应用配置");
    warning->button(0)->click();
    checker.select(Id);
    checker.setDirectory(Id, QFileInfo(outside).path());
    auto* rows = dialog.findChild<ShowPackageCheckerWidget*>();
    QTRY_VERIFY(textOf(rows).contains("Suite"));
    auto* contents = dialog.findChild<PackageContentsWidget*>();
    contents->listing()->retry();
    contents->listing()->cancel();
    name->setText("ab");  // lists nothing that was cancelled
    QCOMPARE(contents->listing()->state(), PackageListing::State::Cancelled);
    QVERIFY(!dialog.findChild<QLabel*>("package_name_warning")->isHidden());  // no dot
    name->setText("a.b");
    QVERIFY(dialog.findChild<QLabel*>("package_name_warning")->isHidden());
    const QPoint moved = dialog.pos() + QPoint(30, 10);
    dialog.move(moved);
    name->setText("a.bc");
    QCOMPARE(dialog.pos(), moved);
    name->setText("a.b");
    contents->listing()->retry();
    QTRY_COMPARE_WITH_TIMEOUT(contents->listing()->state(), PackageListing::State::Listed, 60000);
    dialog.findChild<QAbstractButton*>("package_contents_btn")->click();
    QVERIFY(!dialog.findChild<QTreeWidget*>()->findItems("Suite", Qt::MatchRecursive).isEmpty());
    auto* address = dialog.findChild<Fenk::LineEdit*>("package_maintainer_address");
    address->setText("no address");
    ok->click();
    QCOMPARE(address->alertMessage(), QString("Your input is not a valid e-mail address"));
    address->setText("a@b.example");
    dialog.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QCOMPARE(outOfReach(&dialog), QString());
    const QString query = m_home.write("bin/dpkg-query", "#!/bin/sh\necho installed\n");
    QVERIFY(QFile::setPermissions(query, QFile::ReadOwner | QFile::ExeOwner));
    auto path = std::make_unique<EnvironmentGuard>();
    path->set("PATH", (QFileInfo(query).path() + ':').toUtf8() + qgetenv("PATH"));
    name->lineEdit()->selectAll();
    QTest::keyClicks(name->lineEdit(), "a.c");
    QTRY_COMPARE(name->alertMessage(), QString("Another program's package has this name"));
    ok->click();
    QVERIFY(ok->isEnabled() && dialog.isVisible());
    path.reset();
    name->setText("a.b");
    const QString configuration = directory + "/pkgcfg";
    QVERIFY(QDir().rename(configuration, directory + "/away") && QFile::link("/proc/none", configuration));
    ok->click();
    QTRY_VERIFY(dialog.findChild<Fenk::FloatingMessage*>());
    QVERIFY(dialog.isVisible() && ok->isEnabled());
    QVERIFY(QFile::remove(configuration) && QDir().rename(directory + "/away", configuration));
    ok->click();
    QTRY_VERIFY(!dialog.isVisible());
    QVERIFY(readFile(directory + "/pkgcfg/pkginfo.json").contains("\"pkgversion\": \"2.0A\""));
    QVERIFY(readFile(directory + "/pkgcfg/pkgsrc.json").contains("drive_c/Suite/b.exe"));
    QPointer<DoPackageDialog> packaging;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (auto* found = qobject_cast<DoPackageDialog*>(window))
            packaging = found;
    }
    QVERIFY(packaging);
    delete packaging;  // ends the script
    EnvironmentGuard variables;
    variables.set("DEBEMAIL", "e@f.example");
    const auto named = [] { return PackageMaintainer::environment().value("DEBEMAIL"); };
    QCOMPARE(named(), QString("a@b.example"));
    PackageMaintainer().remember();  // both fields emptied
    QCOMPARE(named(), QString());
    settingsStore()->setOption("basic.deb_maintainer.is_given", false);
    QCOMPARE(named(), QString("e@f.example"));
}

void PackagingTest::theFormAsksTheService() {
    FakeBottleService service;
    QVERIFY(service.start());
    QWidget window;
    window.show();
    AppConfigDialog::openFor({"asked", "a"}, &window);
    QPointer<AppConfigDialog> dialog = window.findChild<AppConfigDialog*>();
    QVERIFY(dialog && dialog->isVisible());
    auto* name = dialog->findChild<Fenk::LineEdit*>("package_appname");
    auto* retry = dialog->findChild<QAbstractButton*>("package_shortcuts_retry");
    QTRY_VERIFY(retry->isVisible());
    service.setBottle("asked", {{"Path", m_home.path()},
                                {"External_Programs", QJsonObject{{"a", QJsonObject{{"name", "Answer"}}}}}});
    retry->click();
    QTRY_COMPARE(name->text(), QString("Answer"));
    dialog->findChild<QAbstractButton*>("package_cancelbtn")->click();
    QTRY_VERIFY(!dialog);
}

int main(int argc, char** argv) {
    const PrivateBus bus;  // before the application, which connects to it
    Fenk::Application application(argc, argv);
    PackagingTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "PackagingTest.moc"
