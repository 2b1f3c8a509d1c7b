#include "store/install/SetupAppInfoDialog.h"

#include <QAbstractButton>
#include <QCryptographicHash>
#include <QDBusConnection>
#include <QDropEvent>
#include <QJsonArray>
#include <QJsonObject>
#include <QLabel>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QtTest>

#include "backend/ComponentManager.h"
#include "fenk/style/Theme.h"
#include "fenk/window/Application.h"
#include "store/install/DependencyWarningWidget.h"
#include "store/install/FileSelectWidget.h"
#include "store/install/WineDepsCard.h"
#include "store/install/YamlProgramInstallerBanner.h"
#include "support/FakeBottleService.h"
#include "support/FakePackages.h"
#include "support/HttpServer.h"
#include "support/KeyWalk.h"
#include "support/LogCapture.h"
#include "support/PrivateBus.h"
#include "support/Table.h"
#include "support/TestHome.h"

using namespace TestSupport;

namespace {

const char Missing[] =
    "Required packages and components are missing for install application, please click the missing packages "
    "below to install them from App Store. After install all missing packages, click the Next button to "
    "continue.";
const char Provide[] = "You need to provide the setup program of the software in Windows to install it.";

}  // namespace

/// The set-up dialog: what it wants when, by mouse and by keys.
class SetupDialogTest : public QObject {
    Q_OBJECT

    TestHome m_home;
    const FakePackages m_packages{m_home, "wine-package", "archived-wine"};
    FakeBottleService m_service;
    SetupAppInfo m_info;
    ManifestFacts m_manifest;
    std::unique_ptr<SetupAppInfoDialog> m_dialog;

    template <class Part = QWidget>
    Part* part(const QString& name) const {
        for (auto* widget : m_dialog->findChildren<Part*>()) {
            if (widget->accessibleName() == name || widget->objectName() == name)
                return widget;
        }
        return nullptr;
    }
    template <class Part>
    Part* part() const {
        return m_dialog->findChild<Part*>();
    }
    QAbstractButton* install() const { return m_dialog->button(SetupAppInfoDialog::InstallButton); }
    QString shownText() const { return part<QLabel>("dependency_warning_text")->text(); }
    QString hint() const { return part<QLabel>("setup_file_hint")->text(); }
    QStringList missing() const { return part<WineDepsCard>()->packages(); }

    void open() {
        m_dialog = std::make_unique<SetupAppInfoDialog>(m_info, m_manifest);
        m_dialog->open();
        m_dialog->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
    }
    QString file(const QByteArray& content = "MZ") { return m_home.write("d/Setup.exe", content); }

    /// What the service's catalogue says; the lists of the process follow.
    void setRunners(const QJsonArray& installed, const QJsonArray& supported) {
        const QJsonObject catalogue{
            {"runner", QJsonObject{{"installed", installed}, {"supported", supported}}}};
        m_service.setJson("Components.list", catalogue);
        Q_EMIT ComponentManager::instance()->refresh(QString::fromUtf8(QJsonDocument(catalogue).toJson()));
    }

private Q_SLOTS:
    void initTestCase() {
        Fenk::Theme::instance()->setAnimationsEnabled(false);
        QVERIFY(m_service.start());
        QVERIFY(QDBusConnection::sessionBus().registerService("com.home.appstore.client"));
    }
    void init() {
        m_info = {"Seven <b>",
                  "1.2",
                  "https://seven.example/",
                  "https://seven.example/get it",
                  "3M",
                  "Ann",
                  "ann@x",
                  "wine-of-a-store",
                  "a, b"};
        m_manifest = {};
        setRunners({"lumora-wine10-stable"}, {});
    }
    void cleanup() { m_dialog.reset(); }

    void showsTheFacts() {
        open();
        QCOMPARE(m_dialog->title(), QString("Please select the installation program"));
        QVERIFY(m_dialog->width() >= 500 && m_dialog->width() <= 585);
        QCOMPARE(part<QLabel>("App Name: ")->text(), QString("Seven <b>"));
        QCOMPARE(part<QLabel>("App Name: ")->textFormat(), Qt::PlainText);
        QCOMPARE(part<QLabel>("App Size: ")->text(), QString("3M"));
        QCOMPARE(part<QLabel>("Software Contributors: ")->text(), QString("Ann"));
        QVERIFY(part<QLabel>("App Official Site: ")->text().contains("href=\"https://seven.example/\""));
        QTRY_VERIFY(
            shownText().startsWith(QString(Provide) + "<br/>You can download the setup program from <a"));
        QVERIFY(shownText().contains("href=\"https://seven.example/get%20it\""));
        QCOMPARE(install()->toolTip(), QString("<b>Required packages:</b><br/>a, b"));
        QCOMPARE(install()->width(), 185);
        QCOMPARE(outOfReach(m_dialog.get()), QString());
    }

    void hidesWhatIsNotKnown() {
        m_info = {};
        m_info.downloadUrl = "ftp://x/a";
        m_info.officialSite = "javascript:1";
        open();
        QVERIFY(!part("App Size: ") && !part("setup_download_row") && !part("manifest_commands"));
        QVERIFY(!part<QLabel>("App Official Site: ")->text().contains('<'));
        QCOMPARE(shownText(), QString(Provide) + "<br/>You can download the setup program from ftp://x/a");
        QCOMPARE(install()->toolTip(), QString());
    }

    void wantsAFile() {
        open();
        QTest::keyClick(m_dialog.get(), Qt::Key_Return);
        QVERIFY(m_dialog->isVisible() && !install()->isEnabled());
        QCOMPARE(install()->text(), QString("Install"));
        QVERIFY(!part<DependencyWarningWidget>()->isGood());
        const QString path = file();
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(path)});
        LogCapture log;
        QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(part<FileSelectWidget>(), &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent drop({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(part<FileSelectWidget>(), &drop);
        QVERIFY(log.contains("urls: "));
        QTRY_VERIFY(install()->isEnabled());
        QVERIFY(part<DependencyWarningWidget>()->isGood());
        QCOMPARE(m_dialog->filePath(), path);
        QFile::remove(path);
        install()->click();
        QVERIFY(m_dialog->isVisible() && !install()->isEnabled() && m_dialog->filePath().isEmpty());
        part<FileSelectWidget>()->setFile(file());
        QSignalSpy finished(m_dialog.get(), &QDialog::finished);
        install()->setFocus();
        QTest::keyClick(m_dialog.get(), Qt::Key_Return);
        QCOMPARE(finished.value(0).value(0).toInt(), int(SetupAppInfoDialog::InstallButton));
    }

    void packages_data() {
        const Table<QString, QJsonArray, QJsonArray, bool, bool> row("wine", "installed", "supported",
                                                                     "isMissing", "isReplaced");
        const QJsonArray standard{"lumora-wine10-stable"}, none;
        row("a package", "wine-package", standard, none, false, false);
        row("in the archive", "archived-wine", standard, none, true, false);
        row("a runner", "lumora-wine10-stable", standard, none, false, false);
        row("not to be had", "wine-of-a-store", standard, none, false, true);
        row("no Wine at all", "wine-of-a-store", none, none, true, false);
        row("at the service", "lumora-wine-staging", standard, {"lumora-wine-staging"}, true, false);
    }
    void packages() {
        QFETCH(QJsonArray, installed);
        QFETCH(QJsonArray, supported);
        QFETCH(bool, isMissing);
        setRunners(installed, supported);
        QFETCH(QString, wine);
        m_info.winePackage = wine;
        open();
        part<FileSelectWidget>()->setFile(file());
        QTRY_VERIFY(install()->isEnabled());
        QCOMPARE(missing(), isMissing ? QStringList(wine) : QStringList());
        QTEST(part("replaced_wine")->isVisible(), "isReplaced");
        QCOMPARE(install()->text(), QString(isMissing ? "Next" : "Install"));
        QCOMPARE(shownText() == Missing, isMissing);
        QCOMPARE(part<FileSelectWidget>()->isVisible(), !isMissing);
        QCOMPARE(outOfReach(m_dialog.get()), QString());
        LogCapture log;
        m_dialog->addPackage(wine);
        QVERIFY(log.contains(wine + " already exists"));
    }

    /// The way from a missing package to the set-up program.
    void next() {
        setRunners({}, {});
        open();
        QTRY_COMPARE(missing(), QStringList("wine-of-a-store"));
        QTRY_VERIFY(install()->isEnabled());
        QSignalSpy asked(m_dialog.get(), &SetupAppInfoDialog::slotsOpenAppStorePage);
        part<QAbstractButton>("wine-of-a-store")->click();
        QCOMPARE(asked.value(0).value(0).toString(), QString("wine-of-a-store"));
        install()->click();
        QTRY_VERIFY(part("Required packages and components have not installed"));
        QVERIFY(m_dialog->isVisible());
        LogCapture log;
        setRunners({"wine-of-a-store"}, {});
        QVERIFY(log.contains("recheck installed components"));
        QTRY_COMPARE(missing(), QStringList());
        QCOMPARE(install()->text(), QString("Install"));
        QVERIFY(!install()->isEnabled() && part<FileSelectWidget>()->isVisible());
    }

    /// A Wine that the service can fetch comes from it.
    void fetchesARunner() {
        m_info.winePackage = "lumora-wine-staging";
        setRunners({"lumora-wine10-stable"}, {"lumora-wine-staging"});
        m_service.setHeld("Components.install", "{\"ok\":true}");
        open();
        QTRY_COMPARE(missing(), QStringList("lumora-wine-staging"));
        QSignalSpy asked(m_dialog.get(), &SetupAppInfoDialog::slotsOpenAppStorePage);
        auto* link = part<QAbstractButton>("lumora-wine-staging");
        link->click();
        QCOMPARE(m_service.waitForCall("install").arguments, QJsonArray({"runner", "lumora-wine-staging"}));
        Q_EMIT ComponentManager::instance()->updateProgress("runner", "lumora-wine-staging", 1, 4, "");
        QVERIFY(link->text().contains("25%") && !link->isEnabled());
        setRunners({"lumora-wine10-stable", "lumora-wine-staging"}, {});
        m_service.clearCalls();
        m_service.release("install");
        m_service.waitForCall("list");
        bool isRead = false;
        ComponentManager::instance()->update(this, [&isRead] { isRead = true; });
        QTRY_VERIFY(isRead);
        QTRY_COMPARE(missing(), QStringList());
        QCOMPARE(asked.size(), 0);
        m_dialog->reject();
        QVERIFY(m_service.calls("cancelInstall").isEmpty());
    }

    void cancelsAFetch() {
        m_info.winePackage = "lumora-wine-staging";
        setRunners({"lumora-wine10-stable"}, {"lumora-wine-staging"});
        m_service.setHeld("Components.install", "{\"ok\":false}");
        open();
        QTRY_VERIFY(part<QAbstractButton>("lumora-wine-staging"));
        part<QAbstractButton>("lumora-wine-staging")->click();
        m_service.waitForCall("install");
        m_dialog->reject();
        QCOMPARE(m_service.waitForCall("cancelInstall").arguments,
                 QJsonArray({"runner", "lumora-wine-staging"}));
        m_service.release("install");
    }

    void comparesTheFile_data() {
        const Table<QByteArray, QString> row("content", "hint");
        row("expected", "MZ good", "This is the expected file");
        row("another", "MZ other", "This is another version than the expected one");
    }
    void comparesTheFile() {
        m_manifest.setupSha256 = QCryptographicHash::hash("MZ good", QCryptographicHash::Sha256).toHex();
        open();
        QFETCH(QByteArray, content);
        part<FileSelectWidget>()->setFile(file(content));
        QTRY_VERIFY(!hint().isEmpty() && !hint().startsWith("Checking"));
        QTEST(hint(), "hint");
        QTRY_VERIFY(install()->isEnabled());  // a hint, not a refusal
    }

    void downloads() {
        HttpServer server;
        server.files = {{"Seven.exe", "MZ seven"}};
        m_info.downloadUrl = server.address("Seven.exe");
        m_manifest.setupSha256 = QCryptographicHash::hash("MZ seven", QCryptographicHash::Sha256).toHex();
        open();
        QTRY_VERIFY(part("download_btn")->isVisible());
        QVERIFY(server.requests.isEmpty());
        part<QAbstractButton>("download_btn")->click();
        QTRY_COMPARE(QFileInfo(m_dialog->filePath()).fileName(), QString("Seven.exe"));
        QTRY_COMPARE(hint(), QString("This is the expected file"));
        QTRY_VERIFY(install()->isEnabled());
        // One that the user chooses meanwhile stays.
        part<QAbstractButton>("download_btn")->click();
        part<FileSelectWidget>()->setFile(file());
        QTRY_VERIFY(part<QLabel>("download_text")->text().startsWith("Saved as"));
        QVERIFY(m_dialog->filePath().endsWith("/d/Setup.exe"));
        server.files.clear();
        part<QAbstractButton>("download_btn")->click();
        QTRY_VERIFY(part<QLabel>("download_text")->text().contains("no longer at its address"));
        QVERIFY(install()->isEnabled());
    }

    /// While the bottle is set up.
    void bannerByKeys() {
        YamlProgramInstallerBanner banner;
        banner.show();
        banner.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&banner));
        QCOMPARE(outOfReach(&banner), QString());
        QSignalSpy logs(&banner, &WineExeLaunchBanner::showLogsButtonClicked);
        QSignalSpy stopped(&banner, &WineExeLaunchBanner::stopRunning);
        for (auto* widget : banner.findChildren<QWidget*>()) {
            if (widget->accessibleName() == "setup_logs_btn")
                QTest::keyClick(widget, Qt::Key_Space);
        }
        QCOMPARE(logs.size(), 1);
        press(&banner, Qt::Key_Escape);
        auto* question = banner.findChild<BannerCloseConfirmDialog*>();
        QVERIFY(question && question->isVisible());
        question->button(0)->click();
        QCOMPARE(stopped.size(), 1);
    }

    void foldsCommandsOut() {
        m_manifest.commands = {{"regedit", {"/s", "<b>.reg"}, "Sets it up"}};
        open();
        auto* list = part<QPlainTextEdit>("manifest_commands");
        QVERIFY(!list->isVisible());
        QTRY_VERIFY(part("replaced_wine")->isVisible());
        const int height = m_dialog->height();
        part<QAbstractButton>("show_commands_btn")->setFocus();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
        QVERIFY(list->isVisible());
        QCOMPARE(list->toPlainText(), QString("Sets it up\n  regedit /s <b>.reg"));
        QTRY_VERIFY(m_dialog->height() > height);
        part<QAbstractButton>("show_commands_btn")->click();
        QTRY_COMPARE(m_dialog->height(), height);
    }
};

int main(int argc, char** argv) {
    const PrivateBus bus;  // before the application, which connects to it
    Fenk::Application app(argc, argv);
    SetupDialogTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "SetupDialogTest.moc"
